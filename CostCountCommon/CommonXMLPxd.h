// The application's XML files and messages, through the XML parser plug-in.
//
// An object is bound to the plug-in by InitializeXmlPxd; before that, and after FinishXmlPxd, every
// operation fails quietly. Elements are named by the numbers of XmlTagIds.h. One object serves one
// thread at a time. No exception leaves it.
//
// Handles of nodes that an operation returns belong to the caller until DeleteNode. An error
// parameter receives 0, 2 for a tag or an element's name that is not in the catalogue, or the
// plug-in's code (XmlPxdFunctions.h). What goes wrong is printed, a line each, on standard output
// where nothing else is said.
#pragma once

#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "CostCountCommon/CommonPrinterInfo.h"
#include "CostCountCommon/include/CommonXmlPxdData.h"
#include "CostCountCommon/include/XmlPxdFunctions.h"
#include "CostCountCommon/include/XmlTagIds.h"

namespace xmlpxd {
class ElementWriter;
class IndexedTags;
class ListReader;
class MessageParser;
class SystemSettingFiles;
}  // namespace xmlpxd

class CCommonXmlPxd {
public:
    CCommonXmlPxd() = default;
    // Not virtual: the table of virtual functions begins with the three below. Objects of derived
    // classes are not deleted through this one.
    ~CCommonXmlPxd();
    CCommonXmlPxd(const CCommonXmlPxd&) = delete;
    CCommonXmlPxd& operator=(const CCommonXmlPxd&) = delete;

    // --- Binding ---

    // The template of commands, below the core plug-in's resources.
    virtual const char* getBNTCmdBase() const;

    // --- Documents ---

    // Opens the object's own document, closing an earlier one, and returns its root element, null
    // on failure. With `fromResources` the path is one below the core plug-in's resources.
    virtual void* OpenXml(std::string path, bool fromResources);

    // The installed copy of the system setting file. False when there is no such folder.
    virtual bool GetSystemSettingFileFullPath(std::string* path);

    // Binds the object once; a further call fails, but takes its first argument. The name of the
    // system setting file is `systemSettingPath`; the plug-in lies at `parserPath`, with
    // `joinPaths` at `installPath` and `parserPath` run together. True when the plug-in was loaded,
    // even when it lacks entries: what needs those then fails.
    bool InitializeXmlPxd(std::string systemSettingPath, std::string installPath,
                          std::string parserPath, bool joinPaths);
    // Fills the table of the plug-in's entries; for InitializeXmlPxd.
    void LoadAPIsXmlPxd();
    // Closes the object's document and lets go of the plug-in.
    void FinishXmlPxd();

    // Opens a document that the caller gives back with CloseXml(document), and returns its root
    // element, null on failure.
    void* OpenXml(std::string path, void** document);
    void CloseXml(void* document);
    // Closes the object's own document.
    void CloseXml();
    // Null is ignored.
    void DeleteNode(void* node);

    // --- The catalogue ---

    // Fill the catalogues, once; for InitializeXmlPxd.
    void CreateMapSystemCommonSettingTags();
    void CreateMapCommandKeys();
    // The lowest number of that name, with `second` the next one; 0 when there is none. Names of
    // attributes count too.
    unsigned int GetElementID(std::string name, bool second);
    unsigned int GetAttributeID(std::string name);
    // How many attributes an element of that number carries.
    unsigned int hasAttribute(unsigned int id) const;

    // --- Elements ---
    //
    // Null arguments, and numbers beyond the catalogue's, fail at once and leave `*err` as it is.

    // The first element of that tag that a walk from `start`, which is not looked at, meets.
    void* SearchElement(void* start, unsigned int tagId, unsigned int* err);
    // The first child element of that tag.
    void* SearchParentElement(void* parent, unsigned int tagId, unsigned int* err);
    // The next element of the walk: the first child of a container, else the next sibling, else the
    // parent's next sibling. It deliberately climbs no further. `tagId` is what `node` is, or
    // NODE_SELF.
    void* GetNextNode(void* node, unsigned int tagId, unsigned int* err);
    // The next sibling of that name; null at the end and on failure. `node` stays the caller's.
    void* GetNextNode(void* node, const std::string& name);
    // How many elements of that name lie below `node`; all bits set on failure.
    unsigned int GetElementNumber(void* node, std::string name, unsigned int* err);
    // Reads an element. A record that could not be filled stays as it was.
    bool GetElementData(void* node, CCommonXmlPxdElementData* record, unsigned int* err);
    // Reads as many elements as `parent` has child elements, as the walk meets them, into a chain.
    // True when all were read. The caller gives the chain back, also what was read before a
    // failure.
    bool GetElements(void* parent, CCommonXmlPxdElementData** first, unsigned int* err);
    // Gives a record back with all that are chained to it. Null is ignored.
    void releaseElementData(CCommonXmlPxdElementData* first);
    // The text of the first element of that tag, among the children only or in the walk.
    bool GetElementValueWithSearch(void* start, int tagId, bool childOnly, std::string* value,
                                   unsigned int* err);
    // Sets the text of the first element of that tag in the walk.
    bool SetElementBySettingValue(void* start, unsigned int tagId, std::string value);

    // --- The system setting file ---
    //
    // Read afresh on each call. The user's copy overrides the installed one setting by setting, up
    // to the first element in it that the catalogue does not know. A setting that it lacks is told
    // of on standard output before the installed copy answers.

    bool GetElementValueSysCommSettingFile(unsigned int tagId, std::string* value);
    bool GetServiceName(std::string* value);
    bool GetBaseTick(std::string* value);
    bool GetErrLogLevel(std::string* value);
    // Full names of the pipes, of the application's side or of the service's.
    bool GetBNTPipeName(std::string* inName, std::string* outName, bool applicationSide);
    bool GetDetchPipeName(std::string* name);
    bool GetPrinterListFilePath(std::string* path);
    bool GetDBSettingFilePath(std::string* path);
    bool GetErrLogFilePath(std::string* path);
    bool GetScheduledExportSettingFilePath(std::string* path);
    bool GetScheduledExportLogFilePath(std::string* path);
    // Numbers as atoi reads them. A null output is not read; one whose setting cannot be read stays
    // as it is. The result is that of the last one read, false when there is none.
    bool GetRetryData(int* usbRetryCount, int* usbRetryInterval, int* commuRetryCount,
                      int* commuRetryInterval, int* checkCmsInterval, int* checkJobLogErrInterval,
                      int* cancelInterval, int* searchTimeOut, int* searchTtl);
    // Copies a setting into the first element of `targetTagId` in the walk from `start`, paths made
    // full where the reader of the element expects it.
    bool SetElementBySysComSettingValue(void* start, unsigned int targetTagId,
                                        unsigned int settingTagId);

    // --- The job-log database's setting file ---

    // Writes the file in `folder`. 0, or 0xFFFFFFFF on failure.
    unsigned int CreateDBSettingFile(const std::string& folder, const std::string& dbPath,
                                     const std::string& dbVolume);
    // Reads the file in `folder`. True when both were read.
    bool GetDBSetting(const std::string& folder, std::string* dbPath, std::string* dbVolume);
    // One value of the file that the system settings name, and copying one into an element of
    // another document, as SetElementBySysComSettingValue does.
    bool GetElementValueDBSettingFile(unsigned int tagId, std::string* value);
    bool SetElementByDBSettingValue(void* start, unsigned int targetTagId,
                                    unsigned int settingTagId);

    // --- The printer list ---

    // Writes a new file at `path`, or replaces it. The number of printers, or 0xFFFFFFFF with the
    // file as it was. After a failure to save, the document deliberately stays the object's own.
    unsigned int CreatePrinterListFile(std::string path,
                                       const std::list<CCommonPrinterInfo>& printers);
    // Reads the file at `path` into a new chain, which is the caller's. True with `*head` untouched
    // for a list without printers, so it is to be null before. True with `*head` null when the list
    // holds fewer printers side by side than below it. Else false.
    bool GetPrinterList(std::string path, CCommonPrinterInfo** head);
    // One step along the printers, from the root when `first`, else from a printer: the printer,
    // whose handle is the caller's, and its elements. Null at the end, with error 0, and on
    // failure. What follows a printer is taken for one without a look at its name.
    void* GetPrinterElements(void* node, bool first, CCommonXmlPxdElementData** elements,
                             unsigned int* err);
    // Copies a printer's elements, the chain from `elements` on, into a record. Numbers as atoi
    // reads them.
    void SetPrinterData(const CCommonXmlPxdElementData& elements, CCommonPrinterInfo& printer);

    // --- Unit costs ---
    //
    // The file lies at `folder` and `name` run together; without a folder below the data folder of
    // unit costs. Colons are removed from `name`.

    // Writes the file. 0, or 0xFFFFFFFF with the file as it was.
    unsigned int CreateUnitCostFile(std::string& name, const std::string& folder,
                                    const CCommonXmlPxdDataUnitCost& cost);
    // Appends what the file holds to the record's lists. True when it could be opened; a list is
    // read up to the first item that lacks a value. A value that an item lacks is deliberately
    // looked for in the items after it.
    bool GetUnitCost(std::string& name, const std::string& folder, CCommonXmlPxdDataUnitCost& cost);
    // Their steps, below the root of an open document. 0, or 0xFFFFFFFF on failure; a list without
    // items is a failure to read.
    unsigned int CreateUnitCostFile_Ink(const CCommonXmlPxdDataUnitCost& cost, void* root);
    unsigned int CreateUnitCostFile_Media(const CCommonXmlPxdDataUnitCost& cost, void* root);
    unsigned int CreateUnitCostFile_Extra(const CCommonXmlPxdDataUnitCost& cost, void* root);
    unsigned int GetUnitCost_Ink(CCommonXmlPxdDataUnitCost& cost, void* root);
    unsigned int GetUnitCost_Media(CCommonXmlPxdDataUnitCost& cost, void* root);
    unsigned int GetUnitCost_Extra(CCommonXmlPxdDataUnitCost& cost, void* root);

    // --- Printer capabilities ---
    //
    // The file lies below the data folder of printer capabilities. Colons are removed from `name`.

    // Writes the file. 0xFFFFFFFF when it could not be saved; deliberately 0 also when it could not
    // be made up before: that is only told of on standard output.
    unsigned int CreatePrinterCapsFile(std::string& name, const CCommonXmlPxdDataPrinterCaps& caps);
    // Appends what the file holds to the record's lists, as GetUnitCost does.
    bool GetPrinterCaps(std::string& name, CCommonXmlPxdDataPrinterCaps& caps);
    // Their steps, as those of unit costs.
    unsigned int CreatePrinterCapsFile_Ink(const CCommonXmlPxdDataPrinterCaps& caps, void* root);
    unsigned int CreatePrinterCapsFile_MediaTypeList(const CCommonXmlPxdDataPrinterCaps& caps,
                                                     void* root);
    unsigned int CreatePrinterCapsFile_MediaSizeList(const CCommonXmlPxdDataPrinterCaps& caps,
                                                     void* root);
    unsigned int GetPrinterCaps_Ink(CCommonXmlPxdDataPrinterCaps& caps, void* root);
    unsigned int GetPrinterCaps_MediaTypeList(CCommonXmlPxdDataPrinterCaps& caps, void* root);
    unsigned int GetPrinterCaps_MediaSizeList(CCommonXmlPxdDataPrinterCaps& caps, void* root);
    // The elements of the first ink, media type or media size below the root, or of what follows
    // `node`. The chain is the result, and in `*elements`, and the caller's once.
    CCommonXmlPxdElementData* GetPrinterCapsElements(void* node, bool first, unsigned int tagId,
                                                     CCommonXmlPxdElementData** elements,
                                                     unsigned int* err);

    // --- User settings ---

    // Appends what the file among the core plug-in's resources holds to the record's lists, and
    // sets its texts up to the first that is missing. True when it could be opened.
    bool GetUserSetting(CCommonXmlPxdDataUserSettings& settings);
    // Its steps, below the root of an open document. 0, or 0xFFFFFFFF on failure.
    unsigned int GetUserSetting_Scales(CCommonXmlPxdDataUserSettings& settings, void* root);
    unsigned int GetUserSetting_JobCostList(CCommonXmlPxdDataUserSettings& settings, void* root);
    unsigned int GetUserSetting_FilterConditon(CCommonXmlPxdDataUserSettings& settings, void* root);
    // The steps of the last, below the filter condition.
    unsigned int GetUserSetting_FC_PrinterList(CCommonXmlPxdDataUserSettings& settings, void* node);
    unsigned int GetUserSetting_FC_SpanList(CCommonXmlPxdDataUserSettings& settings, void* node);
    unsigned int GetUserSetting_FC_OtherList(CCommonXmlPxdDataUserSettings& settings, void* node);

    // --- Messages to and from the background tools ---
    //
    // A message is the bytes of an XML document. CBntMessageReader cuts what comes out of a pipe
    // into messages.
    //
    // The builders fill a template, with the retry settings of the system, and give the message's
    // size in bytes; elements that they do not write keep the template's texts. On failure the
    // result is 0xFFFFFFFF and `*out` as it was. They use the object's own document, and leave it
    // without one.

    // The object's own document as a message: its size, or -1 (all bits set).
    int ConvertToXmlAndAppDataBin(std::string* out, unsigned int* err);
    // A command of the type get, end or scheduled export. An end command says nothing of a printer.
    // `isReply` is deliberately not written. A failed write of what is said of the printer or of
    // retries fails the command after the rest of it was written.
    unsigned int CreateBNTCommand(std::string* out, CCommonPrinterInfo& printer,
                                  BNTCOMMAND_TYPE type, BNTCOMMAND_PRIORITY priority, bool isReply,
                                  unsigned int processId);
    unsigned int CreateBNTGetCommand(std::string* out, BNTCOMMAND_PRIORITY priority,
                                     CCommonPrinterInfo& printer, unsigned int processId);
    unsigned int CreateBNTScheduledExportCommand(std::string* out, BNTCOMMAND_PRIORITY priority,
                                                 CCommonPrinterInfo& printer,
                                                 unsigned int processId);
    unsigned int CreateBNTEndCommand(std::string* out, unsigned int processId);
    // A command of the type request start, end or result. Null for the event that the sender waits
    // for is the empty name.
    unsigned int CreateBNTRequestCommand(std::string* out, BNTCOMMAND_TYPE type,
                                         BNTCOMMAND_PRIORITY priority, bool isReply,
                                         unsigned int processId, const char* eventName);
    // The reply to a command.
    unsigned int CreateBNTRetCommand(std::string* out, BNTCMDRET_TYPE ret, std::string param);
    // The result of a job of the one background tool, which names the printer by its MAC address,
    // or of the other. `resultType` is a BNTRESULT_TYPE.
    unsigned int CreateResultCommand(std::string* out, const CCommonPrinterInfo& printer,
                                     unsigned int resultType, bool isBnt, bool ipChanged,
                                     bool last);

    // `data` is `size` bytes from another process, whatever they are. On failure the outputs are as
    // they were; without data `*err` is, too. The parsers leave the object without a document. They
    // look for the elements, not at the name of the root element.

    // Makes the message the object's own document, in place of an earlier one, which stays after a
    // failure. Its root element, null on failure.
    void* ConvertFromXmlAndAppDataBin(const unsigned char* data, unsigned long size,
                                      unsigned int* err);
    bool ParseBNTCommand(CBntCommandValue& value, const unsigned char* data, unsigned long size,
                         unsigned int* err);
    bool ParseBNTCmdRet(std::string& ret, std::string& param, const unsigned char* data,
                        unsigned long size, unsigned int* err);
    // The result of a job of the first tool. A message that does not tell whether the printer's
    // address changed is complete: `*ipChanged` is then false, `*err` 0. Null is not read.
    bool ParseBNTResult(std::string& printerId, std::string& result, bool& last,
                        const unsigned char* data, unsigned long size, unsigned int* err,
                        bool* ipChanged);

protected:
    // Entries may be added and taken away.
    std::map<unsigned int, std::string> m_XmlTagIDs;
    std::map<unsigned int, std::string> m_CommandKeys;

private:
    void* m_library = nullptr;

protected:
    // Null while the object is unbound.
    std::shared_ptr<XMLPXD_FUNCLIST> m_FunctionsXmlPxd;

private:
    friend class xmlpxd::ElementWriter;
    friend class xmlpxd::IndexedTags;
    friend class xmlpxd::ListReader;
    friend class xmlpxd::MessageParser;
    friend class xmlpxd::SystemSettingFiles;

    // Brings the index of names up to date. Every operation that looks names up by it begins so.
    void IndexTags();
    unsigned int FirstElementID(std::string_view name) const;
    unsigned int AttributeID(std::string_view name) const;
    // The number of an element of that name, which depends on the parent's for a printer. 0, with
    // the reason in `*err`, when it has none or its parent cannot be read.
    unsigned int ElementIDOf(void* node, const std::string& name, unsigned int* err);
    // `*isAcross` tells whether the step led to a sibling.
    void* Step(void* node, unsigned int tagId, bool* isAcross, unsigned int* err);
    // SearchElement. The first step that leads neither to the first child of `start` nor from there
    // across, and each step after it, counts `*strays` down; at zero the search ends.
    void* Search(void* start, unsigned int tagId, unsigned long* strays, unsigned int* err);
    // The name of a child element that is searched for; when the catalogue lacks it, that is
    // printed.
    const std::string* ChildName(unsigned int tagId, unsigned int* err) const;
    // The first element of that tag in the walk, with a limit as Search has it, and an element,
    // with what goes wrong printed as GetElementValueWithSearch prints it.
    bool ReadInWalk(void* start, unsigned int tagId, unsigned long* strays,
                    CCommonXmlPxdElementData* data, unsigned int* err);
    bool ReadFound(void* element, unsigned int tagId, CCommonXmlPxdElementData* data,
                   unsigned int* err);
    unsigned int CountPrinters(void* root, unsigned int* err);
    // GetElements that leaves nothing behind on failure and always tells why.
    bool ReadElements(void* parent, CCommonXmlPxdElementData** first, unsigned int* err);
    bool ReadElement(void* node, CCommonXmlPxdElementData* record, unsigned int* err);
    // The keyword of messages of that number; null when the catalogue lacks it.
    const std::string* Keyword(unsigned int key) const;
    bool SetKeyword(void* start, unsigned int tagId, unsigned int key);

    void* m_document = nullptr;
    std::string m_systemSettingFile;
    // Of the document opened last, owned by whoever opened it. Nothing reads it so far.
    void* m_root = nullptr;

    std::vector<std::pair<unsigned int, std::string>> m_indexedTags;  // what the index was made of
    std::unordered_map<std::string_view, unsigned int> m_tagIndex;
    bool m_isIndexed = false;  // for the time of an operation
};
