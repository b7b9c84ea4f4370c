# Writes a table of every call method of every generated proxy, so a test can call each one:
#   { "getFileType", [](Proxy& p) { _LM1__getFileType in; _LM1__getFileTypeResponse out;
#                                    return p.getFileType(&in, out); } },
# The including file defines the template ProxyCall<Proxy> { const char* name; int (*call)(Proxy&); }.
#   cmake -DGEN_DIR=<soapcpp2 output> -DOUT=<file> -DPROXIES="A;B" -P GenerateProxyCalls.cmake
set(text "// Generated from the proxy headers: every call method with a default request.\n")
foreach(proxy IN LISTS PROXIES)
  file(STRINGS "${GEN_DIR}/soap${proxy}Proxy.h" lines
       REGEX "virtual int [A-Za-z0-9_]+\\(_LM1__[A-Za-z0-9_]+ \\*[A-Za-z0-9_]+, _LM1__[A-Za-z0-9_]+ &[A-Za-z0-9_]+\\) { return")
  list(LENGTH lines count)
  if(count EQUAL 0)
    message(FATAL_ERROR "no call methods found in soap${proxy}Proxy.h")
  endif()
  string(APPEND text "static const ProxyCall<${proxy}Proxy> k${proxy}Calls[] = {\n")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE
      "^.*virtual int ([A-Za-z0-9_]+)\\((_LM1__[A-Za-z0-9_]+) \\*[A-Za-z0-9_]+, (_LM1__[A-Za-z0-9_]+) &.*$"
      "    {\"\\1\", [](${proxy}Proxy& p) { \\2 in; \\3 out; return p.\\1(&in, out); }},"
      entry "${line}")
    string(APPEND text "${entry}\n")
  endforeach()
  string(APPEND text "};  // ${count} call methods\n")
endforeach()
file(WRITE "${OUT}.tmp" "${text}")
execute_process(COMMAND ${CMAKE_COMMAND} -E copy_if_different "${OUT}.tmp" "${OUT}")
file(REMOVE "${OUT}.tmp")
