#include "common/export.h"

#define PQX_VERSION_TEXT "PQX:1100:20240723:linux-x8664:svn:"

const char pqxid[] = "@(#)" PQX_VERSION_TEXT;

const char* pqx_GetVersion() { return PQX_VERSION_TEXT; }
PQX_SECOND_NAME(pqx_GetVersion);
