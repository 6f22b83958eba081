# Puts a library or program into the output folder of the preset.
function(tsr_output target)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${TSR_OUT}
        LIBRARY_OUTPUT_DIRECTORY ${TSR_OUT})
endfunction()
