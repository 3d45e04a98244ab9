// The reference editor: the fields of one reference, to be changed and saved.
#pragma once

#import "ReferenceForm.h"

#import <StandIns/Korvo/Adapter/KOReference.h>
#include <StandIns/Korvo/Library/EditableFields.h>

#import <Cocoa/Cocoa.h>

#include <vector>

@class KOReferenceEditorWindowController;

@protocol KOReferenceEditorDelegate <NSObject>
// After the library has taken the changes.
- (void)referenceWasSaved:(KOReference *)reference;
- (void)editorWillClose:(KOReferenceEditorWindowController *)editor;
@end

@interface KOReferenceEditorWindowController : NSWindowController {
  id<KOReferenceEditorDelegate> delegate_;  // not retained
  KOReference *reference_;
  std::vector<korvo::library::EditableField> loaded_;  // as the library has them
  korvo::windows::ReferenceForm form_;                 // a control for each, in the same order
  NSTextField *statusLabel_;
}
- (id)initWithReference:(KOReference *)reference delegate:(id<KOReferenceEditorDelegate>)delegate;

- (KOReference *)reference;
// Puts the changed fields into the library. NO, with the reason in the window, when it does
// not take them; nothing is lost then.
- (BOOL)save;
- (void)saveClicked:(id)sender;
- (void)revert:(id)sender;
// Asks what is to become of unsaved changes, and does it. NO when the user wants neither to save
// nor to lose them, or they cannot be saved.
- (BOOL)mayClose;

// By CSL's name of the field; empty for the citation identifier.
- (NSString *)textOfField:(NSString *)key;
// As if the user had typed it and gone on to another field.
- (void)setText:(NSString *)text ofField:(NSString *)key;
// What stands below the field: how to write it or, once it is wrong, why.
- (NSString *)remarkOnField:(NSString *)key;
- (NSString *)statusText;
@end
