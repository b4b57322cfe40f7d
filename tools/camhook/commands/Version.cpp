#include "tools/camhook/commands/Version.h"

const char* camhook::version() {
#ifdef CAMHOOK_COMMIT
  return "camhook " CAMHOOK_VERSION " (" CAMHOOK_COMMIT ")";
#else
  return "camhook " CAMHOOK_VERSION;
#endif
}
