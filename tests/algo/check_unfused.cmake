# Fails when the machine code of the detector or of its literal transcription holds a fused
# multiply-add instruction (x86 vfmadd..., vfnmsub...; ARM fmla, fmls, fmadd, fnmsub...). A
# fused instruction rounds once where the device rounds the product and then the sum; the
# compiler emits them unless told not to (-ffp-contract=off), also from separate multiply and
# add intrinsics. The identity tests cannot see it when both sides are fused alike.
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
