# Puts the help book together: cmake -DFROM=<resources/help> -DTO=<folder> -P HelpBook.cmake
# A page is a file of pages/ that starts with its <h1>; it gets the contents at its side. All their words go into the index that the
# search page reads, and their headings into the list on that page, which serves where no script runs.
cmake_policy(VERSION 3.25)

set(chapters
  "Start here" index start keys
  "Logging work" entry display pictures
  "Finding and billing" search reports letterhead invoice ledger statements
  "The office's lists" lists clients inactive todo
  "Paper and files" printing files transfer safety settings
  "Search" search-page)

function(title_of page result)
  string(REGEX MATCH "<h1>([^<]*)</h1>" found "${page}")
  set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

function(read_page name result)
  file(READ ${FROM}/pages/${name}.html text)
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(file_of name result)
  if(name STREQUAL "search-page")
    set(${result} "search.html" PARENT_SCOPE)
  elseif(name STREQUAL "search")
    set(${result} "find.html" PARENT_SCOPE)
  else()
    set(${result} "${name}.html" PARENT_SCOPE)
  endif()
endfunction()

set(names ${chapters})
list(FILTER names INCLUDE REGEX "^[a-z-]+$")

# The contents, with the mark @name@ behind each page's own class attribute.
set(contents "")
set(open OFF)
foreach(item IN LISTS chapters)
  if(NOT item IN_LIST names)
    if(open)
      string(APPEND contents "</ul>\n")
    endif()
    string(APPEND contents "<p>${item}</p>\n<ul>\n")
    set(open ON)
  else()
    read_page(${item} page)
    title_of("${page}" title)
    file_of(${item} file)
    string(APPEND contents "<li><a href=\"${file}\"@${item}@>${title}</a></li>\n")
  endif()
endforeach()
string(APPEND contents "</ul>\n")

set(index "")
set(headings "")
foreach(name IN LISTS names)
  read_page(${name} page)
  title_of("${page}" title)
  file_of(${name} file)
  if(name STREQUAL "search-page")
    continue()
  endif()
  string(REGEX MATCHALL "<h2 id=\"[^\"]*\">[^<]*</h2>" found "${page}")
  foreach(heading IN LISTS found)
    string(REGEX REPLACE "<h2 id=\"([^\"]*)\">([^<]*)</h2>" "\\2: <a href=\"${file}#\\1\">${title}</a>" entry "${heading}")
    list(APPEND headings "<li>${entry}</li>")
  endforeach()
  string(REGEX REPLACE "<h1>[^<]*</h1>" "" text "${page}")
  string(REGEX REPLACE "</?(a|b|kbd)( [^>]*)?>" "" text "${text}")
  string(REGEX REPLACE "<[^>]*>" " " text "${text}")
  string(REGEX REPLACE "[ \r\n\t]+" " " text "${text}")
  foreach(pair "&amp~&" "&lt~<" "&gt~>" "&nbsp~ ")
    string(REPLACE "~" ";" pair "${pair}")
    list(GET pair 0 from)
    list(GET pair 1 to)
    string(REPLACE "${from}\;" "${to}" text "${text}")
  endforeach()
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  string(APPEND index "{ file: \"${file}\", title: \"${title}\", text: \"${text}\" },\n")
endforeach()
list(SORT headings CASE INSENSITIVE)
list(JOIN headings "\n" headings)

file(REMOVE_RECURSE ${TO})
file(MAKE_DIRECTORY ${TO})
foreach(name IN LISTS names)
  read_page(${name} page)
  title_of("${page}" title)
  file_of(${name} file)
  string(REPLACE "@headings@" "${headings}" page "${page}")
  string(REPLACE "@${name}@" " class=\"here\" aria-current=\"page\"" side "${contents}")
  string(REGEX REPLACE "@[a-z-]+@" "" side "${side}")
  file(WRITE ${TO}/${file} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>${title} - Vardelin help</title>
<link rel=\"stylesheet\" type=\"text/css\" href=\"book.css\">
</head>
<body>
<div id=\"book\">
<div id=\"page\" role=\"main\">
${page}</div>
<div id=\"contents\" role=\"navigation\" aria-label=\"Contents\">
${side}</div>
</div>
</body>
</html>
")
endforeach()
file(WRITE ${TO}/search-index.js "var helpPages = [\n${index}];\n")
file(COPY ${FROM}/book.css ${FROM}/plain.css ${FROM}/search.js ${FROM}/pictures DESTINATION ${TO})
