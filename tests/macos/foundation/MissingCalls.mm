#import "tests/macos/foundation/MissingCalls.h"

@implementation NSFileManager (MissingCalls)
- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)folder
                   inDomains:(NSSearchPathDomainMask)domain {
    const bool isAsked = folder == NSApplicationSupportDirectory && domain == NSUserDomainMask;
    NSURL* first = [NSURL fileURLWithPath:isAsked ? @"/x/Stra\u00DFe/" : @"/other"];
    return [NSArray arrayWithObjects:first, [NSURL fileURLWithPath:@"/second"], nil];
}

- (NSURL*)containerURLForSecurityApplicationGroupIdentifier:(NSString*)group {
    return [group isEqualToString:@"G.r"] ? [NSURL URLWithString:@"file:///x/G.r//"] : nil;
}
@end
