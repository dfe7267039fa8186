// What only the system's Objective-C classes answer: folders of the user, launching, listing,
// regular expressions. Without automatic reference counting.
#import <Foundation/Foundation.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "CostCountCommon/src/CancellationOff.h"
#include "CostCountCommon/src/platform/Platform.h"
#include "CostCountCommon/src/platform/RegularExpressions.h"
#include "CostCountCommon/src/platform/TrailingSlashes.h"

namespace platform {
namespace {

// Not @autoreleasepool, which is left full when an exception leaves it.
class AutoreleasePool {
public:
    AutoreleasePool() : m_pool([[NSAutoreleasePool alloc] init]) {}
    ~AutoreleasePool() { [m_pool drain]; }
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

private:
    // A cancelled thread would leave behind what the classes hold, and locks of theirs.
    const CancellationOff m_whole;
    NSAutoreleasePool* const m_pool;
};

// Nil for text that is not UTF-8.
NSString* StringOf(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

// Empty for nil, and for what has no UTF-8.
std::string Utf8Of(NSString* string) {
    const char* text = [string UTF8String];
    return text != nullptr ? text : "";
}

// Empty for nil; what has no UTF-8 becomes a text that is none, for those who tell the two apart.
// Not the file-system representation, which takes letters and their accents apart.
std::string PathOf(NSString* path) {
    const std::string text = Utf8Of(path);
    return text.empty() && [path length] != 0 ? "\xFF" : std::string(WithoutTrailingSlashes(text));
}

}  // namespace

std::string ApplicationSupportFolder() {
    const AutoreleasePool pool;
    NSArray* folders =
        [[NSFileManager defaultManager] URLsForDirectory:NSApplicationSupportDirectory
                                               inDomains:NSUserDomainMask];
    NSURL* first = [folders firstObject];
    return PathOf([first path]);
}

std::string GroupContainerFolder(const char* group) {
    const AutoreleasePool pool;
    NSFileManager* files = [NSFileManager defaultManager];
    NSString* identifier = StringOf(group);
    if (identifier == nil ||
        ![files respondsToSelector:@selector(containerURLForSecurityApplicationGroupIdentifier:)]) {
        return {};
    }
    NSURL* container = [files containerURLForSecurityApplicationGroupIdentifier:identifier];
    return PathOf([container path]);
}

std::string TemporaryFolder() {
    const AutoreleasePool pool;
    return PathOf(NSTemporaryDirectory());
}

std::string ExpandTilde(const std::string& path) {
    // The system would also tidy up a path that has no tilde.
    if (path.empty() || path.front() != '~') {
        return path;
    }
    const AutoreleasePool pool;
    std::string expanded = PathOf([StringOf(path) stringByExpandingTildeInPath]);
    return expanded.empty() || expanded.front() == '~' ? path : expanded;
}

pid_t Launch(const std::string& path, const std::string& argument, LaunchFailure* failure) {
    const AutoreleasePool pool;
    @try {
        NSTask* task = [[[NSTask alloc] init] autorelease];
        // Text that is not UTF-8 is nil, which raises an exception here like what cannot be run.
        [task setLaunchPath:StringOf(path)];
        [task setArguments:[NSArray arrayWithObject:StringOf(argument)]];
        [task launch];
        return [task processIdentifier];
    } @catch (NSException* exception) {
        failure->name = Utf8Of([exception name]);
        failure->reason = Utf8Of([exception reason]);
        return -1;
    }
}

bool ListFolder(const std::string& folder, std::vector<std::string>* names) {
    const AutoreleasePool pool;
    NSString* path = StringOf(folder);
    NSArray* entries =
        path == nil ? nil
                    : [[NSFileManager defaultManager] contentsOfDirectoryAtPath:path error:nullptr];
    if (entries == nil) {
        return false;
    }
    std::vector<std::string> found;
    found.reserve([entries count]);
    for (NSString* entry in entries) {
        std::string name = Utf8Of(entry);
        if (!name.empty()) {
            found.push_back(std::move(name));
        }
    }
    std::sort(found.begin(), found.end());
    *names = std::move(found);
    return true;
}

bool KeepMatching(const std::string& expression, std::vector<std::string>* names) {
    const AutoreleasePool pool;
    NSString* pattern = StringOf(expression);
    if (pattern == nil || !IsModest(expression)) {
        return false;
    }
    NSRegularExpression* compiled = [NSRegularExpression regularExpressionWithPattern:pattern
                                                                              options:0
                                                                                error:nullptr];
    if (compiled == nil) {
        return false;
    }
    std::erase_if(*names, [&](const std::string& name) {
        const AutoreleasePool ofThisName;
        NSString* text = StringOf(name);
        return text == nil || [compiled firstMatchInString:text
                                                   options:0
                                                     range:NSMakeRange(0, [text length])] == nil;
    });
    return true;
}

}  // namespace platform
