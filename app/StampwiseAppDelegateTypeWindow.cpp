#include "app/StampwiseAppDelegate.h"

// Stands in until the model photo's date text can be written; the Type window
// calls it after every apply.
void StampwiseAppDelegate::reWriteDataTime() {}
