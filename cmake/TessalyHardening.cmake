# What Debian's packages are compiled with against attacks by hostile files, asked of dpkg-buildflags where that is:
# other distributions set flags of their own. Debugging information and the level of optimisation stay the preset's,
# and no path of the machine that built a program gets into it.
find_program(TESSALY_BUILDFLAGS dpkg-buildflags)

# tessaly_buildflags(VARIABLE KIND PATTERN): the flags of one kind that match the pattern.
function(tessaly_buildflags variable kind pattern)
  execute_process(COMMAND "${TESSALY_BUILDFLAGS}" --get ${kind} OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
  separate_arguments(flags)
  list(FILTER flags INCLUDE REGEX "${pattern}")
  set(${variable} "${flags}" PARENT_SCOPE)
endfunction()

if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT TESSALY_SANITIZERS)
  target_compile_options(tessaly-options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
                                                   "-ffile-prefix-map=${PROJECT_BINARY_DIR}=build")
  if(TESSALY_BUILDFLAGS)
    tessaly_buildflags(compiling CXXFLAGS "^-fstack|^-Wformat|^-Werror=format|^-fcf-protection")
    tessaly_buildflags(preprocessing CPPFLAGS "^-D|^-Wdate")
    tessaly_buildflags(linking LDFLAGS "^-Wl,-z")
    target_compile_options(tessaly-options INTERFACE ${preprocessing} ${compiling})
    target_link_options(tessaly-options INTERFACE ${linking})
  endif()
endif()
