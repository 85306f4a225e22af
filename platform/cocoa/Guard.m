#import <Foundation/Foundation.h>

id corvaneCallGuarded(void (*call)(void*), void* context) {
  @try {
    call(context);
  } @catch (NSException* exception) {
    return exception;
  }
  return nil;
}
