#include "CostCountCommon/CommonPrinterInfo.h"

#include <utility>

namespace {

void Copy(const std::string& field, std::string* out) {
    if (out != nullptr) {
        *out = field;
    }
}

using Slots = std::array<std::string, CCommonPrinterInfo::NAMES>;

void CopySlot(const Slots& slots, unsigned int index, std::string* out) {
    Copy(index < slots.size() ? slots.at(index) : std::string(), out);
}

void SetSlot(Slots& slots, unsigned int index, std::string&& value) {
    if (index < slots.size()) {
        slots.at(index) = std::move(value);
    }
}

}  // namespace

void CCommonPrinterInfo::GetPrinterName(std::string* out, unsigned int index) const {
    CopySlot(m_printerNames, index, out);
}

void CCommonPrinterInfo::SetPrinterName(std::string value, unsigned int index) {
    SetSlot(m_printerNames, index, std::move(value));
}

void CCommonPrinterInfo::GetLanguage(std::string* out, unsigned int index) const {
    CopySlot(m_languages, index, out);
}

void CCommonPrinterInfo::SetLanguage(std::string value, unsigned int index) {
    SetSlot(m_languages, index, std::move(value));
}

void CCommonPrinterInfo::GetModelName(std::string* out) const {
    Copy(m_modelName, out);
}

void CCommonPrinterInfo::SetModelName(std::string value) {
    m_modelName = std::move(value);
}

void CCommonPrinterInfo::GetSerialNumber(std::string* out) const {
    Copy(m_serialNumber, out);
}

void CCommonPrinterInfo::SetSerialNumber(std::string value) {
    m_serialNumber = std::move(value);
}

void CCommonPrinterInfo::GetMacAddress(std::string* out) const {
    Copy(m_macAddress, out);
}

void CCommonPrinterInfo::SetMacAddress(std::string value) {
    m_macAddress = std::move(value);
}

void CCommonPrinterInfo::GetPortType(std::string* out) const {
    Copy(m_portType, out);
}

void CCommonPrinterInfo::SetPortType(std::string value) {
    m_portType = std::move(value);
}

void CCommonPrinterInfo::GetPortNumber(std::string* out) const {
    Copy(m_portNumber, out);
}

void CCommonPrinterInfo::SetPortNumber(std::string value) {
    m_portNumber = std::move(value);
}

void CCommonPrinterInfo::GetTrackingName(std::string* out) const {
    Copy(m_trackingName, out);
}

void CCommonPrinterInfo::SetTrackingName(const std::string& value) {
    m_trackingName = value;
}

void CCommonPrinterInfo::GetOXALServices(std::string* out) const {
    Copy(m_oxalServices, out);
}

void CCommonPrinterInfo::SetOXALServices(std::string value) {
    m_oxalServices = std::move(value);
}

void CCommonPrinterInfo::GetFriendlyName(std::string* out) const {
    Copy(m_friendlyName, out);
}

void CCommonPrinterInfo::SetFriendlyName(std::string value) {
    m_friendlyName = std::move(value);
}

void CCommonPrinterInfo::GetAuthInfo(std::string* out) const {
    Copy(m_authInfo, out);
}

void CCommonPrinterInfo::SetAuthInfo(std::string value) {
    m_authInfo = std::move(value);
}

void CCommonPrinterInfo::GetAdditionalInfo(std::string* out) const {
    Copy(m_additionalInfo, out);
}

void CCommonPrinterInfo::SetAdditionalInfo(std::string value) {
    m_additionalInfo = std::move(value);
}

void CCommonPrinterInfo::GetPrinterCycleAcquisition(std::string* out) const {
    Copy(m_cycleAcquisition, out);
}

void CCommonPrinterInfo::SetPrinterCycleAcquisition(std::string value) {
    m_cycleAcquisition = std::move(value);
}

void CCommonPrinterInfo::GetRegist(std::string* out) const {
    Copy(m_regist, out);
}

void CCommonPrinterInfo::SetRegist(std::string value) {
    m_regist = std::move(value);
}

void CCommonPrinterInfo::SetSendTimeNow() {
    m_sendTime = std::time(nullptr);
}

bool CCommonPrinterInfo::CheckSendTime(unsigned int interval) const {
    const double elapsed = std::difftime(std::time(nullptr), m_sendTime);
    // A time in the future, as after the clock was set back: sending at once beats waiting for it.
    return elapsed < 0 || elapsed >= static_cast<double>(interval);
}
