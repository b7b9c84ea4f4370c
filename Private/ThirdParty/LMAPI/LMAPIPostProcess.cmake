# Build-time steps around soapcpp2, run with `cmake -DSTEP=<pre|post> -DGEN_DIR=<dir> -P`.
#
# pre:  removes the split serializer files of an earlier run, so a smaller service description
#       leaves no stale part behind.
# post: 1. Gives every synchronous call method of every generated proxy an entry/exit trace
#          (LMSoapProxyTrace, "Entering Class::op" / "Exiting Class::op" on "soap_proxy"). The
#          call method is the inline one that runs send_<op> and recv_<op>; the scope object
#          covers both, so the exit line follows the close of the connection on every path.
#          The step fails the build when the number of traced methods differs from the number
#          of operations, so a change of the generator's output cannot drop the tracing quietly.
#       2. Makes the proxies use the process's one namespace table.
#       3. Gathers the split serializer parts (soapC_NNN.cpp, their number depends on the
#          description) into BUCKETS translation units with fixed names that the build knows in
#          advance, so both cores compile soapC in parallel without parsing soapH.h per part.
#       4. Leaves in the WSDL and XSD files only the schemaLocations that name a schema file.

if(NOT GEN_DIR)
  message(FATAL_ERROR "GEN_DIR not set")
endif()

if(STEP STREQUAL "pre")
  file(GLOB _old "${GEN_DIR}/soapC_[0-9]*.cpp")
  if(_old)
    file(REMOVE ${_old})
  endif()
  return()
endif()

if(NOT STEP STREQUAL "post")
  message(FATAL_ERROR "STEP must be pre or post")
endif()

# 1. Proxy call tracing.
file(GLOB _proxies "${GEN_DIR}/soap*Proxy.h")
if(NOT _proxies)
  message(FATAL_ERROR "no generated proxy headers in ${GEN_DIR}")
endif()
foreach(_hdr IN LISTS _proxies)
  get_filename_component(_name "${_hdr}" NAME_WE)
  string(REGEX REPLACE "^soap" "" _class "${_name}")
  file(READ "${_hdr}" _text)
  if(_text MATCHES "LMSoapProxyTrace")
    message(FATAL_ERROR "${_hdr} is already traced")
  endif()

  string(REGEX MATCHALL "virtual int send_[A-Za-z0-9_]+\\(" _sends "${_text}")
  list(LENGTH _sends _op_count)

  string(REGEX REPLACE
    "(virtual int ([A-Za-z0-9_]+)\\(const char \\*soap_endpoint_url, const char \\*soap_action, [^\n]*\\) {) (return this->send_)"
    "\\1 LMSoapProxyTrace lm_trace(\"${_class}::\\2\"); \\3"
    _text "${_text}")
  # Trace lines carry the operation's wire name: "_USCORE" in an identifier is "_" on the wire.
  string(REGEX MATCHALL "lm_trace\\(\"[^\"]*\"\\)" _traces "${_text}")
  list(LENGTH _traces _traced)
  foreach(_t IN LISTS _traces)
    string(REPLACE "_USCORE" "_" _wire "${_t}")
    if(NOT _wire STREQUAL _t)
      string(REPLACE "${_t}" "${_wire}" _text "${_text}")
    endif()
  endforeach()

  if(_op_count EQUAL 0 OR NOT _traced EQUAL _op_count)
    message(FATAL_ERROR "${_hdr}: traced ${_traced} call methods of ${_op_count} operations")
  endif()

  string(REPLACE "#include \"soapH.h\"" "#include \"soapH.h\"\n#include \"LMSoapProxyTrace.h\"" _text
                 "${_text}")
  file(WRITE "${_hdr}" "${_text}")
endforeach()

# 2. One namespace table for the client. Each generated proxy installs a static copy of the
#    generator's table; renaming that copy makes its soap_set_namespaces() call pick up the
#    process's table (LMAPINamespaces.cpp) instead. The service classes (simulator and tests
#    only) keep the generator's SOAP 1.2-first table: with SOAP 1.1 first, a service that
#    answers a SOAP 1.2 request with a fault would write the fault in the 1.1 shape.
file(GLOB _classes "${GEN_DIR}/soap*Proxy.cpp")
foreach(_src IN LISTS _classes)
  file(READ "${_src}" _text)
  string(REPLACE "static const struct Namespace namespaces[] ="
                 "static const struct Namespace generated_namespaces[] =" _renamed "${_text}")
  if(_renamed STREQUAL _text)
    message(FATAL_ERROR "${_src}: no namespace table found to replace")
  endif()
  file(WRITE "${_src}" "${_renamed}")
endforeach()

# 3. Serializer buckets. An empty bucket is a valid, empty translation unit.
if(NOT BUCKETS)
  set(BUCKETS 1)
endif()
file(GLOB _parts RELATIVE "${GEN_DIR}" "${GEN_DIR}/soapC_[0-9]*.cpp")
if(NOT _parts)
  # Not split: the whole serializer goes into the first bucket.
  set(_parts soapC.cpp)
endif()
list(SORT _parts)
# Contiguous runs of parts of about equal size (the first part, with the generic element
# dispatch, is several times larger than the others).
set(_total 0)
foreach(_p IN LISTS _parts)
  file(SIZE "${GEN_DIR}/${_p}" _sz)
  math(EXPR _total "${_total} + ${_sz}")
endforeach()
math(EXPR _last "${BUCKETS} - 1")
foreach(_b RANGE 0 ${_last})
  set(_body_${_b} "// Generated: serializer parts for ${BUCKETS} parallel translation units.\n")
endforeach()
set(_cum 0)
foreach(_p IN LISTS _parts)
  math(EXPR _b "${_cum} * ${BUCKETS} / ${_total}")
  string(APPEND _body_${_b} "#include \"${_p}\"\n")
  file(SIZE "${GEN_DIR}/${_p}" _sz)
  math(EXPR _cum "${_cum} + ${_sz}")
endforeach()
foreach(_b RANGE 0 ${_last})
  math(EXPR _n "${_b} + 1")
  file(WRITE "${GEN_DIR}/LMAPI_soapC_${_n}.cpp" "${_body_${_b}}")
endforeach()

# 4. The WSDL and XSD files import the security and addressing namespaces with a schemaLocation
#    that repeats the namespace name, which is no schema file: a client that loads the WSDL would
#    try to fetch them and fail. Only a schemaLocation naming one of the schema files generated
#    here is kept; the imports themselves stay, without a location.
file(GLOB _documents "${GEN_DIR}/*.wsdl" "${GEN_DIR}/*.xsd")
foreach(_doc IN LISTS _documents)
  file(READ "${_doc}" _text)
  string(REGEX MATCHALL " schemaLocation=\"[^\"]*\"" _locations "${_text}")
  list(REMOVE_DUPLICATES _locations)
  set(_changed FALSE)
  foreach(_location IN LISTS _locations)
    string(REGEX REPLACE "^ schemaLocation=\"([^\"]*)\"$" "\\1" _target "${_location}")
    if(NOT _target MATCHES "^[A-Za-z0-9_.-]+\\.xsd$" OR NOT EXISTS "${GEN_DIR}/${_target}")
      string(REPLACE "${_location}" "" _text "${_text}")
      set(_changed TRUE)
    endif()
  endforeach()
  if(_changed)
    file(WRITE "${_doc}" "${_text}")
  endif()
endforeach()
