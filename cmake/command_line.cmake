# read_command_line(TARGET SOURCE): the source in which a program reads its command line, by CLI11. That is done once a
# run, and optimising CLI11's templates would take longer than all else in the program.
function(read_command_line target source)
    find_package(CLI11 REQUIRED)
    set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-O0>)
    target_link_libraries(${target} PRIVATE CLI11::CLI11)
endfunction()
