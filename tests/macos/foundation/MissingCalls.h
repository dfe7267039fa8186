// The calls that GNUstep lacks. Only a program that links MissingCalls.mm has them.
#import <Foundation/Foundation.h>

@interface NSFileManager (MissingCalls)
- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)folder inDomains:(NSSearchPathDomainMask)domain;
- (NSURL*)containerURLForSecurityApplicationGroupIdentifier:(NSString*)group;
@end
