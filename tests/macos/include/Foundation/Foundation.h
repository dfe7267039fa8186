// As CoreFoundation/CoreFoundation.h beside this folder: declarations for a type-check.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <stddef.h>

#define nil nullptr
#if defined(__arm64__)
using BOOL = bool;
#else
using BOOL = signed char;
#endif

@class NSArray, NSError, NSURL;

using NSInteger = long;
using NSUInteger = unsigned long;

struct NSRange {
    NSUInteger location;
    NSUInteger length;
};

inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
    return {location, length};
}

@protocol NSObject
- (BOOL)respondsToSelector:(SEL)selector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
- (instancetype)autorelease;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)text;
@property(readonly) NSUInteger length;
@property(readonly) const char* UTF8String;
@property(readonly, copy) NSString* stringByExpandingTildeInPath;
@end

struct NSFastEnumerationState {
    unsigned long state;
    __unsafe_unretained id* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
};

@interface NSArray : NSObject
+ (instancetype)arrayWithObject:(id)object;
@property(readonly) NSUInteger count;
@property(nonatomic, readonly) id firstObject;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(__unsafe_unretained id[])buffer
                                    count:(NSUInteger)size;
@end

@interface NSURL : NSObject
@property(readonly, copy) NSString* path;
@end

__attribute__((objc_exception))
@interface NSException : NSObject
@property(readonly, copy) NSString* name;
@property(readonly, copy) NSString* reason;
@end

enum NSSearchPathDirectory : NSUInteger { NSApplicationSupportDirectory = 14 };
// Options are plain numbers to C++.
using NSSearchPathDomainMask = NSUInteger;
enum : NSSearchPathDomainMask { NSUserDomainMask = 1 };

@interface NSFileManager : NSObject
@property(class, readonly) NSFileManager* defaultManager;
- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)folder inDomains:(NSSearchPathDomainMask)domain;
- (NSURL*)containerURLForSecurityApplicationGroupIdentifier:(NSString*)group;
- (NSArray*)contentsOfDirectoryAtPath:(NSString*)path error:(NSError**)error;
@end

@interface NSTask : NSObject
@property(copy) NSString* launchPath;
@property(copy) NSArray* arguments;
@property(readonly) int processIdentifier;
- (void)launch;
@end

using NSRegularExpressionOptions = NSUInteger;
using NSMatchingOptions = NSUInteger;

@class NSTextCheckingResult;

@interface NSRegularExpression : NSObject
+ (NSRegularExpression*)regularExpressionWithPattern:(NSString*)pattern
                                             options:(NSRegularExpressionOptions)options
                                               error:(NSError**)error;
- (NSTextCheckingResult*)firstMatchInString:(NSString*)text
                                    options:(NSMatchingOptions)options
                                      range:(NSRange)range;
@end

extern "C" NSString* NSTemporaryDirectory();
