// Objects of classes of the module are looked into only after they were made: Range.__new__(Range)
// is none yet, and would be memory without a value.

#ifndef POKERMATH_PYTHON_CONSTRUCTED_H_
#define POKERMATH_PYTHON_CONSTRUCTED_H_

#include <pybind11/pybind11.h>

namespace pokermath {

/// Whether an object is of the class, whatever its __class__ says.
template <typename Class>
bool IsA(pybind11::handle object) {
  const auto* const type = pybind11::detail::get_type_info(typeid(Class));
  return object && type != nullptr && PyObject_TypeCheck(object.ptr(), type->type);
}

/// What type_caster of such a class derives from. An object that is not made is a TypeError, like
/// one of another class.
template <typename Class>
struct ConstructedCaster : pybind11::detail::type_caster_base<Class> {
  bool load(pybind11::handle source, bool convert) {
    if (!IsA<Class>(source)) return false;
    auto* const object = reinterpret_cast<pybind11::detail::instance*>(source.ptr());
    const auto* const type = pybind11::detail::get_type_info(typeid(Class));
    return object->get_value_and_holder(type).holder_constructed() &&
           pybind11::detail::type_caster_base<Class>::load(source, convert);
  }
};

}  // namespace pokermath

#define POKERMATH_CONSTRUCTED(class_name) \
  template <>                             \
  struct pybind11::detail::type_caster<class_name> : pokermath::ConstructedCaster<class_name> {}

#endif  // POKERMATH_PYTHON_CONSTRUCTED_H_
