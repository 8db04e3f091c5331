# The tables of data/ travel inside the program, so that they cannot be missing beside it.

# embed_data(<library> <room> <name> <folder>): adds every table of data/<folder> to a library as
# read-only bytes, with an array <name>Bytes of their paths; <room>/<name>Bytes.h declares it.
function(embed_data library room name folder)
  set(folder ${PROJECT_SOURCE_DIR}/data/${folder})
  file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*.txt ${folder}/*.tsv)
  list(SORT files)
  set(bytes "")
  set(declarations "")
  set(rows "")
  set(paths "")
  set(n 0)
  foreach(file ${files})
    string(APPEND bytes
           "    \"file_${n}: .incbin \\\"${folder}/${file}\\\"\\n\"\n")
    string(APPEND declarations "extern const char file_${n}[];\n")
    string(APPEND rows "    {\"${file}\", file_${n}},\n")
    list(APPEND paths ${folder}/${file})
    math(EXPR n "${n} + 1")
  endforeach()
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/${name}Bytes.cpp)
  file(CONFIGURE OUTPUT ${generated} CONTENT "// The files of a folder of data, one behind the other.
#include \"@room@/@name@Bytes.h\"

__asm__(
    \".section .rodata\\n\"
@bytes@    \"file_end: .byte 0\\n\"
    \".text\\n\");

extern \"C\" {
@declarations@extern const char file_end[];
}

namespace Sonarello {

const T@name@Bytes @name@Bytes[] = {
@rows@    {{}, file_end},
};
const std::size_t @name@ByteCount = ${n};

}  // namespace Sonarello
" @ONLY)
  set_source_files_properties(${generated} PROPERTIES OBJECT_DEPENDS "${paths}")
  target_sources(${library} PRIVATE ${generated})
endfunction()
