// Files as a part of the program. The assembler takes them in: compilers are slow with arrays of
// that size.
//
//   POKERMATH_EMBED_FILE(pokermath_orders, "/path/to/orders.bin", 0);
//   std::span<const std::uint8_t> orders = POKERMATH_EMBEDDED(pokermath_orders);

#ifndef POKERMATH_PLATFORM_EMBEDDED_FILE_H_
#define POKERMATH_PLATFORM_EMBEDDED_FILE_H_

#include <cstdint>
#include <span>

#if defined(__wasm__)
#define POKERMATH_EMBED_SECTION(name) ".section .rodata." #name ",\"\",@\n"
#define POKERMATH_EMBED_END ".text"
#else
#define POKERMATH_EMBED_SECTION(name) ".pushsection .rodata." #name ",\"a\",%progbits\n"
#define POKERMATH_EMBED_END ".popsection"
#endif

/// At file scope, with a name that is one of a kind.
///
/// @param path     a text
/// @param padding  zero bytes that stand behind the file, for who reads several bytes at a time
//
// Hidden, or the compiler would look for them in other libraries.
#define POKERMATH_EMBED_FILE(name, path, padding)                                             \
  asm(POKERMATH_EMBED_SECTION(name) ".type " #name ",@object\n" #name ":\n.incbin \"" path    \
                                    "\"\n"                                                    \
                                    ".type " #name "_end,@object\n" #name                     \
                                    "_end:\n.zero 1 + " #padding                              \
                                    "\n"                                                      \
                                    ".size " #name "," #name "_end - " #name "\n.size " #name \
                                    "_end, 1\n" POKERMATH_EMBED_END);                         \
  extern "C" [[gnu::visibility("hidden")]] const std::uint8_t name[];                         \
  extern "C" [[gnu::visibility("hidden")]] const std::uint8_t name##_end[]

#define POKERMATH_EMBEDDED(name) std::span<const std::uint8_t>(name, name##_end)

#endif  // POKERMATH_PLATFORM_EMBEDDED_FILE_H_
