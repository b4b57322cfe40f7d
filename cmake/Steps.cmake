# Code generation for a camhook that names the library's steps: the preset camhook includes this file.
add_compile_options(
  # Functions and lines by address.
  -g1
  # A call in last position stays a call, so its return address is on the stack.
  -fno-optimize-sibling-calls
  # Equal code of two steps is not merged, so an address belongs to one step.
  -fno-crossjumping -fno-tree-tail-merge -fno-ipa-icf)
