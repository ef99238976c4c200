# Fails when the detector or its literal transcription holds a fused multiply-add (x86
# vfmadd..., ARM fmla, fmadd...): it rounds once where the device rounds twice, and the
# identity tests cannot see it when both sides are fused alike.
foreach(library IN ITEMS ${DETECTOR} ${REFERENCE})
  execute_process(COMMAND ${OBJDUMP} -d --no-show-raw-insn ${library}
      OUTPUT_VARIABLE code ERROR_VARIABLE errors RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${OBJDUMP} failed on ${library}: ${errors}")
  endif()
  string(REGEX MATCHALL "[^\n]*[ \t]v?fn?m(add|sub|la|ls)[a-z0-9.]*[ \t][^\n]*" fused "${code}")
  list(LENGTH fused count)
  string(REGEX MATCHALL "\n *[0-9a-f]+:\t" instructions "${code}")
  list(LENGTH instructions total)
  if(count GREATER 0)
    list(SUBLIST fused 0 5 first)
    list(JOIN first "\n" first)
    message(FATAL_ERROR "${library}: ${count} fused multiply-add instructions, for example:\n${first}")
  endif()
  message(STATUS "${library}: no fused multiply-add in ${total} instructions")
endforeach()
