// Declarations of the Core Foundation functions that the macOS backend uses, written from their
// public documentation so that it can be type-checked on another system. Nothing here is compiled
// on macOS.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

using Boolean = unsigned char;
using UInt8 = unsigned char;
using CFIndex = long;
using CFTypeID = unsigned long;
using CFOptionFlags = unsigned long;
using CFStringEncoding = uint32_t;
using CFAbsoluteTime = double;
using CFTimeInterval = double;

using CFTypeRef = const void*;
using CFPropertyListRef = CFTypeRef;
using CFAllocatorRef = const struct __CFAllocator*;
using CFArrayRef = const struct __CFArray*;
using CFBundleRef = struct __CFBundle*;
using CFErrorRef = struct __CFError*;
using CFNumberRef = const struct __CFNumber*;
using CFStringRef = const struct __CFString*;
using CFTimeZoneRef = const struct __CFTimeZone*;
using CFURLRef = const struct __CFURL*;

enum CFComparisonResult : CFIndex {
    kCFCompareLessThan = -1,
    kCFCompareEqualTo,
    kCFCompareGreaterThan
};
using CFStringCompareFlags = CFOptionFlags;  // options are plain numbers to C++
enum CFNumberType : CFIndex { kCFNumberSInt64Type = 4 };
enum CFURLPathStyle : CFIndex { kCFURLPOSIXPathStyle = 0 };
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFStringRef kCFBundleVersionKey;
extern const CFStringRef kCFPreferencesAnyHost;
extern const CFStringRef kCFPreferencesCurrentApplication;
extern const CFStringRef kCFPreferencesCurrentUser;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFIndex CFArrayGetCount(CFArrayRef array);

CFBundleRef CFBundleGetMainBundle();
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url);
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopySupportFilesDirectoryURL(CFBundleRef bundle);
CFURLRef CFBundleCopyBuiltInPlugInsURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table);
CFArrayRef CFBundleCopyBundleLocalizations(CFBundleRef bundle);
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);

CFStringRef CFErrorCopyDescription(CFErrorRef error);

CFTypeID CFNumberGetTypeID();
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type, const void* value);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user,
                                         CFStringRef host);
void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application,
                           CFStringRef user, CFStringRef host);
Boolean CFPreferencesSynchronize(CFStringRef application, CFStringRef user, CFStringRef host);

CFTypeID CFStringGetTypeID();
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text,
                                      CFStringEncoding encoding);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size,
                           CFStringEncoding encoding);
CFComparisonResult CFStringCompare(CFStringRef first, CFStringRef second,
                                   CFStringCompareFlags options);

CFAbsoluteTime CFAbsoluteTimeGetCurrent();
CFTimeZoneRef CFTimeZoneCopyDefault();
CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef zone, CFAbsoluteTime at);

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                       CFURLPathStyle style, Boolean isFolder);
CFURLRef CFURLCopyAbsoluteURL(CFURLRef url);
CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex size);
}
