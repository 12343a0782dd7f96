// Stands between the decoder and the library to count its calls: the program's symbols come first.
#include <dlfcn.h>

#include <map>

#include "pqx_video.h"
#include "streams.h"

namespace {

std::map<std::string, int> calls;

template <class Operation, class... Arguments>
pqx_Status counted(Operation*, const char* name, int columns, int rows, Arguments... arguments) {
  ++calls[std::string(name + sizeof "pqx_Video_" - 1) + ' ' + std::to_string(columns) + 'x' + std::to_string(rows)];
  static std::map<std::string, Operation*> found;
  Operation*& operation = found[name];
  if (!operation) operation = reinterpret_cast<Operation*>(::dlsym(RTLD_NEXT, name));
  return operation(arguments...);
}

}  // namespace

std::map<std::string, int> mpeg_test::take_calls() { return std::exchange(calls, {}); }

// One step, two steps.
#define COUNT_1(NAME)                                                                  \
  pqx_Status NAME(const uint8_t* from, uint8_t* to, int step, int columns, int rows) { \
    return counted(&NAME, #NAME, columns, rows, from, to, step, columns, rows);        \
  }
#define COUNT_2(NAME)                                                                                 \
  pqx_Status NAME(const uint8_t* from, uint8_t* to, int from_step, int step, int columns, int rows) { \
    return counted(&NAME, #NAME, columns, rows, from, to, from_step, step, columns, rows);            \
  }
COUNT_1(pqx_Video_CopyRef_8U)
COUNT_1(pqx_Video_CopyRefAve_8U)
COUNT_1(pqx_Video_InterpX_8U)
COUNT_1(pqx_Video_InterpAveX_8U)
COUNT_2(pqx_Video_InterpY_8U)
COUNT_2(pqx_Video_InterpAveY_8U)
COUNT_2(pqx_Video_InterpXY_8U)
COUNT_2(pqx_Video_InterpAveXY_8U)
