#include "Log.h"
#include "tests/model/LogTest.h"

void zm::test::logInOtherFile(const char* text) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", text);
}
