// What each source adds to the module.

#ifndef POKERMATH_PYTHON_BINDINGS_H_
#define POKERMATH_PYTHON_BINDINGS_H_

#include <pybind11/pybind11.h>

namespace pokermath {

void AddRanges(pybind11::module_& module);
void AddEquity(pybind11::module_& module);
void AddEvaluators(pybind11::module_& module);
void AddHands(pybind11::module_& module);

/// After all of them: makes the classes such that an object of one never becomes one of another.
/// Without that, Python lets objects change their class, make bases and leave them unmade, and the
/// memory of one would be read as another's.
void SealClasses(pybind11::module_& module);

}  // namespace pokermath

#endif  // POKERMATH_PYTHON_BINDINGS_H_
