// The part "Forwards" of CCommonUtility.
#include <exception>

#include "CostCountCommon/CommonUtility.h"
#include "CostCountCommon/include/MacUtility.h"
#include "CostCountCommon/src/BundleFolders.h"
#include "CostCountCommon/src/UtilityLog.h"
#include "compatible/osFree.h"

void CCommonUtility::Sleep(unsigned int milliseconds) {
    ::Sleep(milliseconds);
}

bool CCommonUtility::CreateEvent(void** event) {
    if (event == nullptr) {
        utility::LogError(__LINE__, "invalid parameter.");
        return false;
    }
    *event = ::CreateEvent(nullptr, false, false, nullptr);
    return *event != nullptr;
}

bool CCommonUtility::SendEvent(void* event) {
    return SetEvent(event);
}

int CCommonUtility::WaitSingleEvent(void* event, unsigned int milliseconds) {
    return WaitForSingleObject(event, milliseconds);
}

void CCommonUtility::ResetEvent(void* event) {
    ::ResetEvent(event);
}

bool CCommonUtility::StartThread(unsigned int (*routine)(void*), void* argument, void** handle) {
    if (handle == nullptr) {
        utility::LogError(__LINE__, "invalid parameter.");
        return false;
    }
    *handle = _beginthreadex(nullptr, 0, routine, argument, 0, nullptr);
    return *handle != nullptr;
}

int CCommonUtility::StartProcessAsMidiumRid(const std::string& modulePath,
                                            const std::string& params) {
    return CreateProcessAsUser(modulePath, params);
}

int CCommonUtility::ExecuteProcess(const std::string& modulePath, const std::string& params) {
    return ::ExecuteProcess(modulePath, params);
}

bool CCommonUtility::CheckFolderExists(const std::string& path) {
    return PathIsDirectory(path.c_str());
}

bool CCommonUtility::CreateFolder(const std::string& path) {
    return ::CreateFolder(path.c_str());
}

bool CCommonUtility::CheckFileExists(const std::string& path) {
    return PathFileExists(path.c_str());
}

bool CCommonUtility::CopyTQUsingFile(const std::string& source, const std::string& target) {
    return CopyFile(source.c_str(), target.c_str(), 0);
}

bool CCommonUtility::CreateIfFolderIsNotExists(const std::string& parent,
                                               const std::string& name) try {
    const std::string folder = bundle::Joined(parent, name);
    return CheckFolderExists(folder) || CreateFolder(folder);
} catch (const std::exception&) {
    return false;  // out of memory
}

void CCommonUtility::GetFileList(const std::string& pattern, std::vector<std::string>& names) {
    MacGetFileList(pattern, names);
}
