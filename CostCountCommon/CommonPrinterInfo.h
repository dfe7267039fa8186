// The record of one managed printer.
//
// A plain value: no input or output, no locking; nothing fails but for want of memory, which throws
// std::bad_alloc. Records may be chained. A record does not own the next one: whoever receives a
// chain walks GetNextPrinterInfo and deletes each record.
#pragma once

#include <array>
#include <ctime>
#include <string>

class CCommonPrinterInfo {
public:
    // Slots of names and of their languages.
    static constexpr unsigned int NAMES = 10;

    // Getters of texts copy into the caller's string; null is ignored. Setters check nothing.

    // The printer's name in one language, and the code of that language, slot by slot. Beyond the
    // last slot a getter gives the empty text and a setter does nothing.
    void GetPrinterName(std::string* out, unsigned int index) const;
    void SetPrinterName(std::string value, unsigned int index);
    void GetLanguage(std::string* out, unsigned int index) const;
    void SetLanguage(std::string value, unsigned int index);

    void GetModelName(std::string* out) const;
    void SetModelName(std::string value);
    void GetSerialNumber(std::string* out) const;
    void SetSerialNumber(std::string value);
    void GetMacAddress(std::string* out) const;
    void SetMacAddress(std::string value);

    // "usb", "ipv4", "ipv6" or "bonjour".
    void GetPortType(std::string* out) const;
    void SetPortType(std::string value);
    // The USB location.
    unsigned int GetLocationId() const { return m_locationId; }
    void SetLocationId(unsigned int value) { m_locationId = value; }
    // Index of the network interface through which the printer is reached.
    int GetNicIndex() const { return m_nicIndex; }
    void SetNicIndex(int value) { m_nicIndex = value; }
    // For a port of type "bonjour" the printer's host name.
    void GetPortNumber(std::string* out) const;
    void SetPortNumber(std::string value);
    void GetTrackingName(std::string* out) const;
    void SetTrackingName(const std::string& value);
    // Whether files tell the tracking name.
    bool GetExistTrackingName() const { return m_existTrackingName; }
    void SetExistTrackingName(bool value) { m_existTrackingName = value; }

    void GetOXALServices(std::string* out) const;
    void SetOXALServices(std::string value);
    void GetFriendlyName(std::string* out) const;
    void SetFriendlyName(std::string value);
    void GetAuthInfo(std::string* out) const;
    void SetAuthInfo(std::string value);
    void GetAdditionalInfo(std::string* out) const;
    void SetAdditionalInfo(std::string value);

    // The cycle in which data is fetched from the printer.
    int GetPrinterTick() const { return m_printerTick; }
    void SetPrinterTick(int value) { m_printerTick = value; }
    void GetPrinterCycleAcquisition(std::string* out) const;
    void SetPrinterCycleAcquisition(std::string value);
    // The state of the registration.
    void GetRegist(std::string* out) const;
    void SetRegist(std::string value);

    // When data was last sent to the printer, in seconds since 1970-01-01 00:00:00 UTC.
    time_t GetSendTime() const { return m_sendTime; }
    void SetSendTime(time_t value) { m_sendTime = value; }
    void SetSendTimeNow();
    // Whether the next sending is due, `interval` seconds after the last, or the last lies in the
    // future.
    bool CheckSendTime(unsigned int interval) const;
    // Kept for the caller.
    bool GetSendFlag() const { return m_sendFlag; }
    void SetSendFlag(bool value) { m_sendFlag = value; }

    CCommonPrinterInfo* GetNextPrinterInfo() { return m_next; }
    const CCommonPrinterInfo* GetNextPrinterInfo() const { return m_next; }
    void SetNextPrinterInfo(CCommonPrinterInfo* next) { m_next = next; }

private:
    std::array<std::string, NAMES> m_printerNames;
    std::array<std::string, NAMES> m_languages;
    std::string m_modelName;
    std::string m_serialNumber;
    std::string m_macAddress;
    std::string m_portType;
    std::string m_portNumber;
    std::string m_trackingName;
    std::string m_oxalServices;
    std::string m_friendlyName;
    std::string m_authInfo;
    std::string m_additionalInfo;
    int m_printerTick = 0;
    std::string m_cycleAcquisition;
    std::string m_regist;
    unsigned int m_locationId = 0;
    int m_nicIndex = 0;
    bool m_sendFlag = false;
    CCommonPrinterInfo* m_next = nullptr;
    time_t m_sendTime = 0;
    bool m_existTrackingName = false;
};
