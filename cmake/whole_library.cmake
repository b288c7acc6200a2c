# The whole library: the core, and what needs files, databases, XML or OpenMP. One compilation serves
# the shared and the static one.
find_package(OpenMP REQUIRED COMPONENTS CXX)
find_package(ODBC REQUIRED)
find_package(pugixml REQUIRED)

add_library(
  pokermath_objects OBJECT
  platform/files.cpp
  platform/messages.cpp
  contracts/cached_opponents.cpp
  contracts/combinations.cpp
  contracts/hand_ranks.cpp
  contracts/hand_ranks_builder.cpp
  contracts/holdem.cpp
  contracts/holdem_ranges.cpp
  contracts/holdem_tables.cpp
  contracts/omaha.cpp
  contracts/omaha_hilo.cpp
  contracts/omaha_sampling.cpp
  contracts/short_deck.cpp
  contracts/state_files.cpp
  contracts/state_machines.cpp
  contracts/state_tables.cpp
  support/diagnostics.cpp
  support/hand_history.cpp
  support/log_file.cpp
  support/markup.cpp
  support/system_facts.cpp
  support/system_text.cpp
  support/xml_check.cpp
  support/xml_text.cpp
  support/odbc/catalog.cpp
  support/odbc/connect_text.cpp
  support/odbc/database.cpp
  support/odbc/field.cpp
  support/odbc/handles.cpp
  support/odbc/names.cpp
  support/odbc/record_set.cpp
  support/odbc/result_set.cpp)
add_dependencies(pokermath_objects pokermath_tables)
target_link_libraries(pokermath_objects PRIVATE pokermath_flags utf8cpp OpenMP::OpenMP_CXX
                                                ODBC::ODBC pugixml::pugixml)
target_compile_options(pokermath_objects PRIVATE ${described})
pokermath_precompile(pokermath_objects)
set_target_properties(
  pokermath_objects
  PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
             VISIBILITY_INLINES_HIDDEN ON CXX_EXTENSIONS OFF)

set(objects $<TARGET_OBJECTS:pokermath_core_objects> $<TARGET_OBJECTS:pokermath_objects>)
add_library(pokermath SHARED ${objects})
add_library(pokermath_static STATIC ${objects})
set_target_properties(pokermath PROPERTIES VERSION 0.${PROJECT_VERSION} SOVERSION 0)
# Instances of standard templates are weak symbols that hidden visibility leaves visible.
target_link_options(pokermath PRIVATE
                    LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
set_target_properties(pokermath PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
set_target_properties(pokermath_static PROPERTIES OUTPUT_NAME pokermath)
set(dependencies ${CMAKE_DL_LIBS} OpenMP::OpenMP_CXX ODBC::ODBC pugixml::pugixml)
target_link_libraries(pokermath PRIVATE ${dependencies})
# Installed, the static library gives the linker names: who finds the package for the shared one
# needs neither these packages nor C++.
set(dependency_names ${CMAKE_DL_LIBS} ${OpenMP_CXX_LIB_NAMES} odbc pugixml)
target_link_libraries(pokermath_static PRIVATE "$<BUILD_INTERFACE:${dependencies}>"
                                               "$<INSTALL_INTERFACE:${dependency_names}>")
