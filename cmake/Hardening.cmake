# cam_harden(TARGET): how a shared library that ships is linked, so that a fault in it is harder to
# use against the process that loads it.

function(cam_harden target)
  target_link_options(${target} PRIVATE
    # What the loader has relocated is read-only from then on, which needs every symbol bound at load.
    LINKER:-z,relro LINKER:-z,now
    LINKER:-z,noexecstack
    # Code that would have to be rewritten at load does not link.
    LINKER:-z,text)
endfunction()
