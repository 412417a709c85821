# Renders one Markdown page of docs/ to a page of the user guide:
#   cmake -DCMARK=... -DINPUT=page.md -DOUTPUT=page.html -P RenderDoc.cmake
# Links to other pages (name.md) become links to their rendered pages.
execute_process(COMMAND ${CMARK} --to html ${INPUT}
                OUTPUT_VARIABLE body RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "cmark failed on ${INPUT}")
endif()
string(REGEX REPLACE "href=\"([-A-Za-z0-9_]+)\\.md([#\"])" "href=\"\\1.html\\2" body "${body}")
string(REGEX MATCH "<h1>([^<]*)</h1>" heading "${body}")
set(title "${CMAKE_MATCH_1}")
if(title STREQUAL "")
    get_filename_component(title ${INPUT} NAME_WE)
endif()
file(WRITE ${OUTPUT} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>${title} - RQPDev</title>
<style>
body { font-family: sans-serif; max-width: 60em; margin: 1em auto; padding: 0 1em;
       line-height: 1.45; color: #1c1c1c; }
nav { border-bottom: 1px solid #ccc; padding-bottom: .4em; margin-bottom: 1em; }
code, pre { background: #f3f3f3; }
pre { padding: .6em; overflow-x: auto; }
table { border-collapse: collapse; }
th, td { border: 1px solid #ccc; padding: .2em .5em; text-align: left; vertical-align: top; }
img { max-width: 100%; border: 1px solid #ccc; }
</style>
</head>
<body>
<nav><a href=\"index.html\">RQPDev user guide</a></nav>
${body}</body>
</html>
")
