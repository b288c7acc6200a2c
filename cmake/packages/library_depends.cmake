# What the shared library needs, as dpkg-shlibdeps finds it. cpack would ask itself, but then gives the
# package scripts that call ldconfig, for which Debian's packages have a trigger.

set(tree ${CPACK_TEMPORARY_DIRECTORY}/libpokermath0)
file(GLOB_RECURSE library ${tree}/usr/lib/libpokermath.so.*.*)
# It has to be there, and nothing of it is read.
file(WRITE ${tree}-depends/debian/control "")
execute_process(
  COMMAND dpkg-shlibdeps -O ${library}
  WORKING_DIRECTORY ${tree}-depends
  OUTPUT_VARIABLE depends
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "shlibs:Depends=" "" CPACK_DEBIAN_LIBPOKERMATH0_PACKAGE_DEPENDS "${depends}")
