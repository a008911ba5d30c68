# Makes the library vorn_shaders: every file below shaders/ as text in the program, under its path
# ("text.vert", "library/LensBlur.frag").
file(GLOB_RECURSE vorn_shader_files CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/shaders/*.vert ${CMAKE_SOURCE_DIR}/shaders/*.frag)
set(vorn_shader_cpp ${CMAKE_BINARY_DIR}/generated/embedded_shaders.cpp)
add_custom_command(
    OUTPUT ${vorn_shader_cpp}
    COMMAND ${CMAKE_COMMAND} "-DFILES=${vorn_shader_files}" -DROOT=${CMAKE_SOURCE_DIR}/shaders -DOUT=${vorn_shader_cpp}
            -P ${CMAKE_SOURCE_DIR}/cmake/write_embedded_shaders.cmake
    DEPENDS ${vorn_shader_files} ${CMAKE_SOURCE_DIR}/cmake/write_embedded_shaders.cmake
    VERBATIM)
add_library(vorn_shaders STATIC ${vorn_shader_cpp})
target_link_libraries(vorn_shaders PUBLIC vorn_options)
