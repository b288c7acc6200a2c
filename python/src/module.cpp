// The module pokermath._core: what the package's own Python is thin over.

#include <pybind11/pybind11.h>

#include "pages/errors.h"
#include "pokermath/version.h"
#include "python/src/bindings.h"

PYBIND11_MODULE(_core, module) {
  namespace py = pybind11;
  using namespace pokermath;
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      std::rethrow_exception(thrown);
    } catch (const UsageError& error) {
      PyErr_SetString(PyExc_ValueError, error.what());
    }
  });
  py::options options;
  options.disable_function_signatures();
  module.attr("__version__") = POKERMATH_VERSION_STRING;
  AddRanges(module);
  AddEquity(module);
  AddEvaluators(module);
  AddHands(module);
}
