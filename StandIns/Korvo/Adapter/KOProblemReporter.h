// Where parts of the host tell what went wrong and that nobody asked about.
#pragma once

#import <Foundation/Foundation.h>

@protocol KOProblemReporter <NSObject>
// One line, for the user.
- (void)reportProblem:(NSString *)problem;
@end
