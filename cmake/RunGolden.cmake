# Runs one golden case of zemtra-cli and compares its output with the expected files.
#
#   cmake -DCLI=<zemtra-cli> -DCASE_DIR=<case folder> -DDATA_DIR=<source data/>
#         -DWORK_DIR=<scratch folder> [-DUPDATE=ON] -P RunGolden.cmake
#
# A case folder holds:
#   args             the arguments, one line; @DIR@ stands for the case folder
#   expected.json    exact stdout (or expected.txt; one of the two)
#   expected-exit    optional exit status, default 0
#   expected-stderr  optional exact stderr
#   home/            optional files laid over the application folder (CONFIG/..., MACRO/...)
# The program runs in WORK_DIR with ZEMTRA_HOME set to a fresh copy of DATA_DIR there, and HOME
# and the XDG folders pointing there as well, so nothing outside WORK_DIR is read or written.
# In the output, the case folder is written back as @DIR@ and the application folder as @HOME@,
# so expected files do not depend on where the tree is checked out.
# With UPDATE=ON the expected files are written from the output instead of compared.
cmake_minimum_required(VERSION 3.25)

foreach(var CLI CASE_DIR DATA_DIR WORK_DIR)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "RunGolden: ${var} is not set")
  endif()
endforeach()

# --- the scratch application folder ---------------------------------------------------------
set(home "${WORK_DIR}/home")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
file(COPY "${DATA_DIR}/" DESTINATION "${home}")
if(IS_DIRECTORY "${CASE_DIR}/home")
  # Always overwrite: file(COPY) skips a file whose time stamp equals the shipped one's, as
  # happens in a fresh checkout.
  file(GLOB_RECURSE overlay RELATIVE "${CASE_DIR}/home" "${CASE_DIR}/home/*")
  foreach(item IN LISTS overlay)
    get_filename_component(folder "${home}/${item}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    file(COPY_FILE "${CASE_DIR}/home/${item}" "${home}/${item}")
  endforeach()
endif()
set(ENV{ZEMTRA_HOME} "${home}")
set(ENV{HOME} "${WORK_DIR}")
set(ENV{XDG_CONFIG_HOME} "${WORK_DIR}/config")
set(ENV{XDG_DATA_HOME} "${WORK_DIR}/share")
set(ENV{LC_ALL} "C")

# --- the command line -------------------------------------------------------------------------
if(NOT EXISTS "${CASE_DIR}/args")
  message(FATAL_ERROR "RunGolden: ${CASE_DIR}/args is missing")
endif()
file(STRINGS "${CASE_DIR}/args" lines LIMIT_COUNT 1)
list(GET lines 0 line)
separate_arguments(arguments UNIX_COMMAND "${line}")
list(TRANSFORM arguments REPLACE "@DIR@" "${CASE_DIR}")

execute_process(
  COMMAND "${CLI}" ${arguments}
  WORKING_DIRECTORY "${WORK_DIR}"
  RESULT_VARIABLE exit_status
  OUTPUT_VARIABLE stdout
  ERROR_VARIABLE stderr)

# Paths of this machine become placeholders; the longer path first, in case one holds the other.
function(zemtra_golden_placeholders text_var)
  set(text "${${text_var}}")
  string(REPLACE "${home}" "@HOME@" text "${text}")
  string(REPLACE "${CASE_DIR}" "@DIR@" text "${text}")
  set(${text_var} "${text}" PARENT_SCOPE)
endfunction()
zemtra_golden_placeholders(stdout)
zemtra_golden_placeholders(stderr)

if(EXISTS "${CASE_DIR}/expected.json")
  set(expected_stdout "${CASE_DIR}/expected.json")
elseif(EXISTS "${CASE_DIR}/expected.txt")
  set(expected_stdout "${CASE_DIR}/expected.txt")
elseif(line MATCHES "--json")
  set(expected_stdout "${CASE_DIR}/expected.json")
else()
  set(expected_stdout "${CASE_DIR}/expected.txt")
endif()

# --- update mode ------------------------------------------------------------------------------
if(UPDATE)
  file(WRITE "${expected_stdout}" "${stdout}")
  if(exit_status STREQUAL "0")
    file(REMOVE "${CASE_DIR}/expected-exit")
  else()
    file(WRITE "${CASE_DIR}/expected-exit" "${exit_status}\n")
  endif()
  if(EXISTS "${CASE_DIR}/expected-stderr")
    file(WRITE "${CASE_DIR}/expected-stderr" "${stderr}")
  endif()
  message(STATUS "updated ${CASE_DIR} (exit ${exit_status})")
  return()
endif()

# --- comparison -------------------------------------------------------------------------------
set(failures "")

# Adds a unified diff of an expected file against what came out to the failure report.
function(zemtra_golden_compare label expected_file actual_text)
  if(EXISTS "${expected_file}")
    file(READ "${expected_file}" expected_text)
  else()
    set(expected_text "")
  endif()
  if(expected_text STREQUAL actual_text)
    return()
  endif()
  get_filename_component(name "${expected_file}" NAME)
  set(actual_file "${WORK_DIR}/actual-${label}")
  file(WRITE "${actual_file}" "${actual_text}")
  find_program(DIFF_PROGRAM diff)
  if(DIFF_PROGRAM)
    execute_process(
      COMMAND "${DIFF_PROGRAM}" -u --label "expected ${name}" --label "actual ${label}"
              "${expected_file}" "${actual_file}"
      OUTPUT_VARIABLE difference)
  else()
    set(difference "--- expected ${name}\n${expected_text}\n+++ actual ${label}\n${actual_text}\n")
  endif()
  set(failures
      "${failures}${label} differs from ${name} (actual output kept in ${actual_file}):\n${difference}\n"
      PARENT_SCOPE)
endfunction()

if(NOT EXISTS "${expected_stdout}")
  string(APPEND failures "no expected.json or expected.txt in ${CASE_DIR}\n")
else()
  zemtra_golden_compare(stdout "${expected_stdout}" "${stdout}")
endif()
if(EXISTS "${CASE_DIR}/expected-stderr")
  zemtra_golden_compare(stderr "${CASE_DIR}/expected-stderr" "${stderr}")
endif()

set(expected_exit 0)
if(EXISTS "${CASE_DIR}/expected-exit")
  file(STRINGS "${CASE_DIR}/expected-exit" expected_exit LIMIT_COUNT 1)
  string(STRIP "${expected_exit}" expected_exit)
endif()
if(NOT exit_status STREQUAL expected_exit)
  string(APPEND failures "exit status ${exit_status}, expected ${expected_exit}; stderr was:\n"
         "${stderr}\n")
endif()

# The report goes out as written (a FATAL_ERROR message would rewrap it); then the test fails.
if(failures)
  message(NOTICE "golden case ${CASE_DIR}\n  zemtra-cli ${line}\n${failures}")
  message(FATAL_ERROR "golden case failed")
endif()
