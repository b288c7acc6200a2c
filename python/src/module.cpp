// The module pokermath._core: what the package's own Python is thin over.

#include <pybind11/pybind11.h>

#include "pages/errors.h"
#include "pokermath/version.h"
#include "python/src/bindings.h"

namespace pokermath {
namespace {

PyObject* RefuseNew(PyTypeObject* type, PyObject*, PyObject*) {
  PyErr_Format(PyExc_TypeError, "%s cannot be made this way", type->tp_name);
  return nullptr;
}

void Seal(PyTypeObject* type) {
  type->tp_flags = (type->tp_flags | Py_TPFLAGS_IMMUTABLETYPE) & ~Py_TPFLAGS_BASETYPE;
  PyType_Modified(type);
}

}  // namespace

// The base and the metaclass are this module's own (PYBIND11_BUILD_ABI). Classes took their way to
// make objects over from the base when they were made; from now on it makes none, nor has it other
// classes.
void SealClasses(pybind11::module_& module) {
  PyTypeObject* base = nullptr;
  for (const char* name : {"Hand", "_HandIterator", "Range", "Answer", "Player"}) {
    auto* const type = reinterpret_cast<PyTypeObject*>(module.attr(name).ptr());
    base = type->tp_base;
    Seal(type);
  }
  for (PyTypeObject* type : {base, Py_TYPE(base)}) {
    type->tp_new = RefuseNew;
    Seal(type);
  }
}

}  // namespace pokermath

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
  SealClasses(module);
}
