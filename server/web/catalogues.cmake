# Writes a source file with the contents of the catalogues. Run with
# cmake -DOUT=FILE -DCATALOGUES="de.mo;..." -P server/web/catalogues.cmake
set(text "#include \"server/web/catalogues.h\"\n\nnamespace {\n\n")
set(rows "")
foreach(catalogue IN LISTS CATALOGUES)
  get_filename_component(language ${catalogue} NAME_WE)
  file(READ ${catalogue} content HEX)
  string(REGEX REPLACE "(..)" "\\\\x\\1" content "${content}")
  # In lines: a compiler need not take a literal of any length at once.
  string(REGEX REPLACE "(................................................................)" "\\1\"\n    \"" content
         "${content}")
  string(APPEND text "constexpr char ${language}[] =\n    \"${content}\";\n\n")
  string(APPEND rows "    if (language == \"${language}\")\n        return {${language}, sizeof ${language} - 1};\n")
endforeach()
string(APPEND text "} // namespace\n\nstd::string_view velmora::server::catalogueOf(std::string_view language)\n{\n"
       "${rows}    return {};\n}\n")
file(WRITE ${OUT} "${text}")
