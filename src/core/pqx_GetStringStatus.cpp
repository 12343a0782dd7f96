#include "common/export.h"

const char* pqx_GetStringStatus(pqx_Status status) {
  switch (status) {
    case PQX_OK:
      return "No error";
    case PQX_ERR_PARAM:
      return "Invalid, out of range or unsupported parameter";
    case PQX_ERR_MEMORY:
      return "Not enough memory for the function";
    case PQX_ERR_DATA:
      return "Incorrect data found (exception) during the execution";
    default:
      return "Unknown Status";
  }
}
PQX_SECOND_NAME(pqx_GetStringStatus);
