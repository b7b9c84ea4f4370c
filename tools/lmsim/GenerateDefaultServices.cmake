# Writes SimDefaultServices.h: for each generated service class, a subclass whose every operation
# answers SOAP_OK with its default (empty) response. The simulator derives from these and
# overrides the operations it implements, so an operation it does not model still gets a
# well-formed answer instead of a fault.
#   cmake -DGEN_DIR=<soapcpp2 output> -DOUT=<header> -DSERVICES="A;B;C" -P GenerateDefaultServices.cmake
set(text "// Generated from the service classes: every operation answers SOAP_OK with an empty response.\n")
string(APPEND text "#ifndef LMSIM_DEFAULT_SERVICES_H\n#define LMSIM_DEFAULT_SERVICES_H\n\n")
foreach(service IN LISTS SERVICES)
  string(APPEND text "#include \"soap${service}Service.h\"\n")
endforeach()
string(APPEND text "\nnamespace lmsim {\n")
foreach(service IN LISTS SERVICES)
  file(STRINGS "${GEN_DIR}/soap${service}Service.h" lines REGEX "virtual int [A-Za-z0-9_]+\\(.*\\) SOAP_PURE_VIRTUAL;")
  list(LENGTH lines count)
  if(count EQUAL 0)
    message(FATAL_ERROR "no operations found in soap${service}Service.h")
  endif()
  string(APPEND text "\nclass Default${service} : public ${service}Service {\npublic:\n")
  string(APPEND text "    explicit Default${service}(struct soap* soap) : ${service}Service(soap) {}\n")
  string(APPEND text "    ${service}Service* copy() override { return nullptr; }\n")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[ \t]*virtual int ([A-Za-z0-9_]+)\\((.*)\\) SOAP_PURE_VIRTUAL;.*$"
           "    int \\1(\\2) override { return SOAP_OK; }" decl "${line}")
    string(APPEND text "${decl}\n")
  endforeach()
  string(APPEND text "};  // ${count} operations\n")
endforeach()
string(APPEND text "\n}  // namespace lmsim\n\n#endif  // LMSIM_DEFAULT_SERVICES_H\n")
file(WRITE "${OUT}.tmp" "${text}")
execute_process(COMMAND ${CMAKE_COMMAND} -E copy_if_different "${OUT}.tmp" "${OUT}")
file(REMOVE "${OUT}.tmp")
