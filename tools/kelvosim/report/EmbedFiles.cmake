# cmake "-DFILES=A;B" -DOUT=FILE.cpp -P EmbedFiles.cmake: the files' bytes as C++, found by name.
set(arrays "")
set(entries "")
set(number 0)
foreach(file IN LISTS FILES)
    file(READ ${file} bytes HEX)
    # Thirty-two digits a line, then each pair of digits as a character.
    string(REGEX REPLACE "................................" "\\0\"\n    \"" bytes "${bytes}")
    string(REGEX REPLACE "[0-9a-f][0-9a-f]" "\\\\x\\0" bytes "${bytes}")
    get_filename_component(name ${file} NAME)
    string(APPEND arrays "constexpr char kFile${number}[] =\n    \"${bytes}\";\n")
    string(APPEND entries "    if (name == \"${name}\") {\n"
        "        return {kFile${number}, sizeof(kFile${number}) - 1};\n    }\n")
    math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUT} "#include \"report/PageAssets.h\"\n\nnamespace {\n\n${arrays}\n}  // namespace\n\n"
    "std::string_view pageAsset(std::string_view name) {\n${entries}    return {};\n}\n")
