# cmake -DNM=... -DOBJCOPY=... -DLIBRARY=... -DRECORDED=... -P RecordCalls.cmake
# Copies the panel's library and lets the copy call RecordingInstr where the panel calls clsInstrInterface. What
# RecordingInstr has no operation for is called as before.
cmake_minimum_required(VERSION 3.25)
set(operations TransactionStart TransactionFinish TransactionCancel OpenInstrument CloseInstrument Connect CheckErrors
  CheckWarnings GetViInfo GetInstrInfo SetMode GetMode SetTiming GetTiming Output SetLevels GetLevels SetLimits GetLimits
  SetTriggerLevels GetTriggerLevels SetRz GetRz SetPatternArray GetPatternArray InstrumentCommands PllRefSource)
execute_process(COMMAND "${NM}" -u "${LIBRARY}" OUTPUT_VARIABLE listing ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(renamed "")
foreach(operation IN LISTS operations)
  string(LENGTH "${operation}" length)
  string(REGEX MATCH "_ZN6tarvik17clsInstrInterface${length}${operation}E[^\n]*" symbol "${listing}")
  if(symbol)
    string(REPLACE "17clsInstrInterface" "14RecordingInstr" recorded "${symbol}")
    string(APPEND renamed "${symbol} ${recorded}\n")
  endif()
endforeach()
file(WRITE "${RECORDED}.symbols" "${renamed}")
execute_process(COMMAND "${OBJCOPY}" "--redefine-syms=${RECORDED}.symbols" "${LIBRARY}" "${RECORDED}"
  COMMAND_ERROR_IS_FATAL ANY)
