# Compiles the help pages into LaunchPanel.chm. Run as a script:
#   cmake -DHELP_SOURCE_DIR=... -DHELP_HEADER=.../HelpContext.h -DHELP_STAGE_DIR=...
#         -DHELP_OUTPUT=.../LaunchPanel.chm -DCHMCMD=/usr/bin/chmcmd -DCHMLS=/usr/bin/chmls
#         -DPYTHON=/usr/bin/python3 -P BuildHelp.cmake
# The context ids come from HelpContext.h alone: its HID... lines become the help
# project's map (HelpMap.h, in decimal). Each line of topics.txt becomes a short
# page of its own with its id as alias, since the help compiler gives a page one
# context id only; the texts of controls also become the what-is-this file
# KYjlpContext.txt, under their numbers. The compiler's warnings (a page that links
# to a file that is not there) and errors (an id without a topic) fail the build.
# The map chmcmd writes names each topic with the folder it compiled in;
# fix-context-map.py leaves the page's name alone there.
cmake_minimum_required(VERSION 3.20)

foreach(var HELP_SOURCE_DIR HELP_HEADER HELP_STAGE_DIR HELP_OUTPUT CHMCMD CHMLS PYTHON)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "BuildHelp.cmake needs -D${var}=...")
  endif()
endforeach()

# Every help id of the header, by name, in decimal: id_<name>, and the list id_names.
function(read_help_ids)
  file(STRINGS "${HELP_HEADER}" lines REGEX "^#define[ \t]+HID")
  set(map "")
  set(names "")
  set(values "")
  foreach(line IN LISTS lines)
    if(NOT line MATCHES "^#define[ \t]+(HID[A-Z0-9_]*)[ \t]+(0x[0-9A-Fa-f]+|[0-9]+)([ \t]|$)")
      message(FATAL_ERROR "HelpContext.h: a help id must be a plain number: ${line}")
    endif()
    set(name "${CMAKE_MATCH_1}")
    math(EXPR value "${CMAKE_MATCH_2}" OUTPUT_FORMAT DECIMAL)
    if(value IN_LIST values)
      message(FATAL_ERROR "HelpContext.h: ${name} repeats the help id ${value}")
    endif()
    list(APPEND values ${value})
    list(APPEND names ${name})
    set(id_${name} ${value} PARENT_SCOPE)
    string(APPEND map "#define ${name} ${value}\n")
  endforeach()
  set(id_names "${names}" PARENT_SCOPE)
  # The help compiler reads nothing but #define lines here.
  file(WRITE "${HELP_STAGE_DIR}/HelpMap.h" "${map}")
endfunction()

function(escape_html out text)
  string(REPLACE "&" "&amp;" text "${text}")
  string(REPLACE "<" "&lt;" text "${text}")
  string(REPLACE ">" "&gt;" text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# One short page: its title, its text, and a link to the page that tells more.
function(write_topic_page file title text more)
  file(READ "${HELP_SOURCE_DIR}/${more}" more_page)
  if(NOT more_page MATCHES "<title>([^<]*)</title>")
    message(FATAL_ERROR "topics.txt: ${more} has no title")
  endif()
  set(more_title "${CMAKE_MATCH_1}")
  escape_html(title "${title}")
  escape_html(text "${text}")
  file(WRITE "${HELP_STAGE_DIR}/${file}"
"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01//EN\">
<html><head>
<meta http-equiv=\"Content-Type\" content=\"text/html; charset=Windows-1252\">
<title>${title}</title>
<link rel=\"stylesheet\" type=\"text/css\" href=\"help.css\">
</head><body>
<h1>${title}</h1>
<p>${text}</p>
<p class=\"related\">See also: <a href=\"${more}\">${more_title}</a></p>
</body></html>
")
endfunction()

# The short topics: their pages, their aliases and files for the project, and the
# what-is-this texts of the controls.
function(write_topics)
  file(STRINGS "${HELP_SOURCE_DIR}/topics.txt" rows)
  set(files "")
  set(aliases "")
  set(popups "")
  foreach(row IN LISTS rows)
    if(row MATCHES "^#" OR row STREQUAL "")
      continue()
    endif()
    if(NOT row MATCHES "^(HID[A-Z0-9_]*) *\\| *([^|]*[^| ]) *\\| *([^|]*[^| ]) *\\| *([a-z]+\\.htm)$")
      message(FATAL_ERROR "topics.txt: not name | title | text | page: ${row}")
    endif()
    set(name "${CMAKE_MATCH_1}")
    set(title "${CMAKE_MATCH_2}")
    set(text "${CMAKE_MATCH_3}")
    set(more "${CMAKE_MATCH_4}")
    if(NOT DEFINED id_${name})
      message(FATAL_ERROR "topics.txt: ${name} is no help id of HelpContext.h")
    endif()
    string(TOLOWER "${name}.htm" file)
    write_topic_page("${file}" "${title}" "${text}" "${more}")
    string(APPEND files "${file}\n")
    string(APPEND aliases "${name}=${file}\n")
    if(name MATCHES "^HIDC_")
      string(APPEND popups ".topic ${id_${name}}\n${text}\n\n")
    endif()
  endforeach()
  file(WRITE "${HELP_STAGE_DIR}/KYjlpContext.txt" "${popups}")
  string(APPEND files "KYjlpContext.txt\n")
  file(READ "${HELP_SOURCE_DIR}/LaunchPanel.hhp" project)
  string(REPLACE "\n[FILES]\n" "\n[FILES]\n${files}" project "${project}")
  string(REPLACE "\n[ALIAS]\n" "\n[ALIAS]\n${aliases}" project "${project}")
  file(WRITE "${HELP_STAGE_DIR}/LaunchPanel.hhp" "${project}")
endfunction()

file(REMOVE_RECURSE "${HELP_STAGE_DIR}")
file(MAKE_DIRECTORY "${HELP_STAGE_DIR}")
file(GLOB pages "${HELP_SOURCE_DIR}/*.htm" "${HELP_SOURCE_DIR}/*.css"
                "${HELP_SOURCE_DIR}/*.hhc" "${HELP_SOURCE_DIR}/*.hhk")
file(COPY ${pages} DESTINATION "${HELP_STAGE_DIR}")
read_help_ids()
write_topics()

execute_process(COMMAND "${CHMCMD}" LaunchPanel.hhp
                WORKING_DIRECTORY "${HELP_STAGE_DIR}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
string(REGEX MATCHALL "(Warning|Error|corrupt)[^\n]*" complaints "${output}${errors}")
if(NOT result EQUAL 0 OR complaints OR NOT EXISTS "${HELP_STAGE_DIR}/LaunchPanel.chm")
  message(FATAL_ERROR "chmcmd failed (${result}):\n${output}${errors}")
endif()
execute_process(COMMAND "${PYTHON}" "${HELP_SOURCE_DIR}/fix-context-map.py" LaunchPanel.chm "${CHMLS}"
                WORKING_DIRECTORY "${HELP_STAGE_DIR}"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the help's context map could not be put right (${result}):\n${output}${errors}")
endif()
file(COPY_FILE "${HELP_STAGE_DIR}/LaunchPanel.chm" "${HELP_OUTPUT}")
