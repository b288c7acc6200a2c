// Any calls of the package: the bytes are the choices that fuzz_module.py makes, so that what leads
// to new places of the module is found again and gone on from.

#include <pybind11/embed.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace py = pybind11;
  // It stays until the process ends, as the module's threads may.
  static const py::object* const run = [] {
    py::initialize_interpreter(false);
    return new py::object(py::module_::import("fuzz_module").attr("run"));
  }();
  (*run)(py::bytes(reinterpret_cast<const char*>(data), size));
  return 0;
}
