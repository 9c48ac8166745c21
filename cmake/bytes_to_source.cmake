# cmake -DINPUT=<file> -DOUTPUT=<file> -DSIZE=<bytes> -P bytes_to_source.cmake
# Writes the first SIZE bytes of INPUT as the elements of a C++ initialiser. Padding that an object format adds after
# them is left out; a shorter INPUT is an error.
file(SIZE ${INPUT} available)
if(available LESS SIZE)
    message(FATAL_ERROR "${INPUT} has ${available} bytes; ${SIZE} are needed.")
endif()
file(READ ${INPUT} hex LIMIT ${SIZE} HEX)
string(REGEX REPLACE "(..)" "0x\\1,\n" elements "${hex}")
file(WRITE ${OUTPUT} "${elements}")
