# The library itself: one set of objects, archived as libqstdlib.a and, where the platform can load one, linked as
# libqstdlib.so.
get_property(QSTDLIB_SHARED GLOBAL PROPERTY TARGET_SUPPORTS_SHARED_LIBS)

set(QSTDLIB_SOURCES
    core/angle.cpp
    core/face.cpp
    core/module.cpp
    core/point.cpp
    core/record_layout.cpp
    core/settings.cpp
    cogo/area.cpp
    cogo/baseline.cpp
    cogo/circle.cpp
    cogo/inverse.cpp
    cogo/line.cpp
    cogo/line_transfer.cpp
    cogo/point_to_line.cpp
    reference/arc_calculation.cpp
    reference/arc_definition.cpp
    reference/reference_line.cpp
    reference/three_point_plane.cpp
    reference/two_point_plane.cpp
    measure/circle_offset.cpp
    measure/corner_offset.cpp
    measure/hand_off.cpp
    measure/line_offset.cpp
    measure/remote_distance.cpp
    measure/remote_elevation.cpp
    measure/slope.cpp
    measure/two_point_target.cpp
    station/adjustment/adjust_result.cpp
    station/adjustment/approximation.cpp
    station/adjustment/general.cpp
    station/adjustment/matrix.cpp
    station/adjustment/observations.cpp
    station/adjustment/plan.cpp
    station/circle.cpp
    station/height.cpp
    station/known_line.cpp
    station/multi_point_resection.cpp
    station/three_point_resection.cpp
    station/two_point_resection.cpp)

set(QSTDLIB_SANITIZE "" CACHE STRING "Further sanitizers for the library's own code, as for -fsanitize=")

add_library(qstdlib_objects OBJECT ${QSTDLIB_SOURCES})
set_target_properties(
    qstdlib_objects
    PROPERTIES POSITION_INDEPENDENT_CODE ${QSTDLIB_SHARED}
               C_VISIBILITY_PRESET hidden
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON)
target_include_directories(qstdlib_objects PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR})
target_compile_definitions(qstdlib_objects PRIVATE QSTDLIB_BUILDING)
# Results must be the same to the last bit everywhere: no fused multiply-add, no rearranging, and the sine and cosine that
# are called, not one sincos for both.
set(QSTDLIB_EXACT -ffp-contract=off -fno-fast-math -fno-builtin-sin -fno-builtin-cos)
target_compile_options(qstdlib_objects PRIVATE ${QSTDLIB_EXACT} -fno-exceptions -fno-rtti)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "arm" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Memory counts on the target: no function is inlined, and no jump threaded, where that makes the code larger.
    target_compile_options(qstdlib_objects PRIVATE -fno-inline-functions -fno-thread-jumps)
endif()
if(QSTDLIB_SANITIZE)
    target_compile_options(qstdlib_objects PRIVATE -fsanitize=${QSTDLIB_SANITIZE} -fno-sanitize-recover=all)
endif()
target_link_libraries(qstdlib_objects PRIVATE $<BUILD_INTERFACE:qstdlib_warnings>)

set(QSTDLIB_LIBRARIES qstdlib_static)
add_library(qstdlib_static STATIC $<TARGET_OBJECTS:qstdlib_objects>)
set_target_properties(qstdlib_static PROPERTIES OUTPUT_NAME qstdlib LINKER_LANGUAGE C EXPORT_NAME qstdlib_static)
target_compile_definitions(qstdlib_static INTERFACE QSTDLIB_STATIC)
# An archive would hand out only some of these objects, and the compiler's library the rest under the same names. So
# programs of this project link them whole; of an installed archive the program decides.
target_link_libraries(qstdlib_static INTERFACE $<BUILD_INTERFACE:${QSTDLIB_SOFT_FLOAT_OBJECTS}>)
if(QSTDLIB_SHARED)
    list(APPEND QSTDLIB_LIBRARIES qstdlib)
    add_library(qstdlib SHARED $<TARGET_OBJECTS:qstdlib_objects> ${QSTDLIB_SOFT_FLOAT_OBJECTS})
    set_target_properties(
        qstdlib
        PROPERTIES VERSION ${PROJECT_VERSION}
                   SOVERSION ${PROJECT_VERSION_MAJOR}
                   # The C++ runtime is not needed: no exceptions, no run-time types, heap by malloc.
                   LINKER_LANGUAGE C)
    target_link_options(qstdlib PRIVATE LINKER:--as-needed)
    if(QSTDLIB_SOFT_FLOAT_OBJECTS)
        # What the library does not call of it stays out.
        target_link_options(qstdlib PRIVATE LINKER:--gc-sections)
    endif()
endif()
foreach(target IN LISTS QSTDLIB_LIBRARIES)
    target_include_directories(
        ${target} INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${target} PUBLIC m)
    add_library(qstdlib::${target} ALIAS ${target})
endforeach()
