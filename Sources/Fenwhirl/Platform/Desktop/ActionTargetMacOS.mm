#include "Fenwhirl/Platform/Desktop/ActionTargetMacOS.h"

@implementation FenwhirlActionTarget

- (void)itemChosen:(id)sender {
    (void)sender;
    if (self.chosen) {
        self.chosen();
    }
}

@end
