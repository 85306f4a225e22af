// The object that the interface file instantiates under the name AppController. It owns the C++ controller of
// that name with all that it works through, hands it the views, and passes the buttons' actions on.
// Owner: the interface file. Thread: main.
#pragma once

#import <AppKit/AppKit.h>

#include <memory>

namespace corvane {
struct CocoaRun;
}

@interface AppController : NSObject <NSApplicationDelegate> {
  IBOutlet NSView* backupNowView;
  IBOutlet NSProgressIndicator* backupProgress;
  IBOutlet NSProgressIndicator* overallProgress;
  IBOutlet NSTextField* modeTextField;
  IBOutlet NSTextField* backupNowStatus;
  IBOutlet NSTextField* failureHint;
  IBOutlet NSButton* openLogButton;
  IBOutlet NSButton* cancelBackupButton;

 @private
  std::unique_ptr<corvane::CocoaRun> run_;
}

- (void)awakeFromNib;
- (IBAction)cancelBackup:(id)sender;
- (IBAction)displayLogWindow:(id)sender;

@end
