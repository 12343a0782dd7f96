#include "common/export.h"

int32_t pqx_nthreads = -1;

pqx_Status pqx_GetNumThreads(int32_t* pNumThreads) {
  *pNumThreads = pqx_nthreads;
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_GetNumThreads);

pqx_Status pqx_SetNumThreads(int32_t numThreads) {
  pqx_nthreads = numThreads;
  return PQX_OK;
}
PQX_SECOND_NAME(pqx_SetNumThreads);
