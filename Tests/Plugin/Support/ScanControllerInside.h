// The scan dialog's controller with what the nib and the controller itself send to it.
#pragma once

#import <KOMellelScanController.h>

@interface KOMellelScanController (Inside)
- (void)setAdapter:(id)adapter;
- (void)setFormatSelectorPopUpButton:(id)popUpButton;
- (void)setGenerateCopyWithBibInStyleButton:(id)button;
@end
