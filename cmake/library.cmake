# How libnxl.so is put together: nxl_objects collects the library's sources, add_kernel_target compiles the kernel
# sources once per processor class and vector width, add_target_objects whatever else exists once per width, and
# nxl_link_library makes the shared library of all.

# Flags of the library's own code: errors are integers, sums are in the order written, complex products plain formulas.
# A product is rounded before it is added, whatever processor the build is for, but in targets that say FUSED.
add_library(nxl_code_flags INTERFACE)
target_compile_options(nxl_code_flags INTERFACE
    -fno-exceptions -fno-rtti -fvisibility=hidden -fvisibility-inlines-hidden -fno-threadsafe-statics
    -fcomplex-arithmetic=improved -ffp-contract=$<IF:$<BOOL:$<TARGET_PROPERTY:NXL_FUSED>>,on,off>)
target_include_directories(nxl_code_flags INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(nxl_code_flags INTERFACE nxl_warnings)

add_library(nxl_objects OBJECT)
target_link_libraries(nxl_objects PRIVATE nxl_code_flags PUBLIC OpenMP::OpenMP_CXX ${METIS_LIBRARY})
target_include_directories(nxl_objects SYSTEM PRIVATE ${METIS_INCLUDE_DIR})

set_property(GLOBAL PROPERTY NXL_KERNEL_SOURCES "")
set_property(GLOBAL PROPERTY NXL_KERNEL_TARGETS "")

# Kernel sources, relative to the calling folder; every target compiles all of them.
function(add_kernel_sources)
    foreach(source IN LISTS ARGN)
        set_property(GLOBAL APPEND PROPERTY NXL_KERNEL_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    endforeach()
endfunction()

# add_target_objects(NAME BITS B SOURCES ... [FUSED] [DEFINITIONS ...] [FLAGS ...]): sources compiled for one target,
# into the namespace nxl::NAME; with FUSED, the products of an expression are fused into its sums. After the build of
# its objects a check refuses any symbol outside that namespace.
function(add_target_objects name)
    cmake_parse_arguments(arg "FUSED" "BITS" "SOURCES;DEFINITIONS;FLAGS" ${ARGN})
    add_library(kernels_${name} OBJECT ${arg_SOURCES})
    set_target_properties(kernels_${name} PROPERTIES NXL_FUSED ${arg_FUSED})
    target_link_libraries(kernels_${name} PRIVATE nxl_code_flags)
    target_compile_definitions(kernels_${name} PRIVATE
        NXL_TARGET=${name} NXL_TARGET_BITS=${arg_BITS} ${arg_DEFINITIONS})
    # Vectors wider than a target's registers stay inside a source, so that it does not matter how they are passed.
    target_compile_options(kernels_${name} PRIVATE ${arg_FLAGS} -Wno-psabi)
    set_property(GLOBAL APPEND PROPERTY NXL_KERNEL_TARGETS ${name})
    if(NOT NXL_SANITIZE)
        set(stamp ${CMAKE_CURRENT_BINARY_DIR}/kernels_${name}.checked)
        add_custom_command(OUTPUT ${stamp}
            COMMAND ${PROJECT_SOURCE_DIR}/cmake/check_kernel_symbols.sh ${CMAKE_NM} ${name}
                    $<TARGET_OBJECTS:kernels_${name}>
            COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
            DEPENDS $<TARGET_OBJECTS:kernels_${name}> ${PROJECT_SOURCE_DIR}/cmake/check_kernel_symbols.sh
            COMMAND_EXPAND_LISTS VERBATIM)
        add_custom_target(check_kernels_${name} DEPENDS ${stamp})
    endif()
endfunction()

# add_kernel_target(mc3_fma CLASS 3 BITS 256 FUSED FLAGS -mavx2 -mfma): the kernels of one class at one vector width.
function(add_kernel_target name)
    cmake_parse_arguments(arg "" "CLASS" "" ${ARGN})
    get_property(sources GLOBAL PROPERTY NXL_KERNEL_SOURCES)
    add_target_objects(${name} SOURCES ${sources} DEFINITIONS NXL_TARGET_CLASS=${arg_CLASS} ${arg_UNPARSED_ARGUMENTS})
endfunction()

# libnxl.so, and nxl_internals for tests that look inside.
function(nxl_link_library)
    get_property(targets GLOBAL PROPERTY NXL_KERNEL_TARGETS)
    set(interface_dir ${PROJECT_SOURCE_DIR}/service/interface)
    add_library(nxl SHARED)
    add_library(nxl::nxl ALIAS nxl)
    add_library(nxl_internals INTERFACE)
    foreach(library IN ITEMS nxl nxl_internals)
        set(scope PRIVATE)
        if(library STREQUAL nxl_internals)
            set(scope INTERFACE)
        endif()
        target_link_libraries(${library} ${scope} nxl_objects)
        target_sources(${library} ${scope} $<TARGET_OBJECTS:nxl_objects>)
        foreach(target IN LISTS targets)
            target_sources(${library} ${scope} $<TARGET_OBJECTS:kernels_${target}>)
        endforeach()
    endforeach()
    foreach(target IN LISTS targets)
        if(TARGET check_kernels_${target})
            add_dependencies(nxl check_kernels_${target})
        endif()
    endforeach()
    target_include_directories(nxl INTERFACE
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    set_target_properties(nxl PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        LINKER_LANGUAGE CXX LINK_DEPENDS "${interface_dir}/nxl.map;${interface_dir}/interposable.list")
    # Calls inside the library stay inside, but for the routines that a host may replace.
    target_link_options(nxl PRIVATE
        LINKER:--version-script=${interface_dir}/nxl.map LINKER:--undefined-version
        LINKER:-Bsymbolic LINKER:--dynamic-list=${interface_dir}/interposable.list
        LINKER:-z,noexecstack,-z,relro,-z,now LINKER:--as-needed)
    if(NOT NXL_SANITIZE)
        target_link_options(nxl PRIVATE -nostdlib++ LINKER:-z,defs)
    endif()
endfunction()
