# Hardening of what is shipped: compiler and linker features that turn an exploitable error into an end of the
# process. Sanitizers and builds without optimization keep what does not disturb them.

include_guard(GLOBAL)
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)

# The highest level of checked library calls that compiler and C library support; 3 also checks sizes known at run time.
function(qb_find_fortify_level)
  set(CMAKE_REQUIRED_FLAGS "-O1 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("
    #include <features.h>
    #if __USE_FORTIFY_LEVEL < 3
    #error
    #endif
    int main() {}" QB_HAS_FORTIFY_3)
  if(QB_HAS_FORTIFY_3)
    set(QB_FORTIFY_LEVEL 3 PARENT_SCOPE)
  else()
    set(QB_FORTIFY_LEVEL 2 PARENT_SCOPE)
  endif()
endfunction()

qb_find_fortify_level()
check_cxx_compiler_flag(-fstack-protector-strong QB_HAS_STACK_PROTECTOR)
# Control-flow enforcement, of x86 only: other processors refuse the flag.
check_cxx_compiler_flag(-fcf-protection=full QB_HAS_CF_PROTECTION)

function(qb_harden target)
  if(QB_HAS_STACK_PROTECTOR)
    target_compile_options(${target} PRIVATE -fstack-protector-strong)
  endif()
  if(QB_HAS_CF_PROTECTION)
    target_compile_options(${target} PRIVATE -fcf-protection=full)
  endif()
  # Sanitizers check the same calls themselves, and need the unchanged calls. The checks exist only with optimization.
  if(NOT QB_SANITIZE)
    target_compile_options(${target} PRIVATE
      $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=${QB_FORTIFY_LEVEL}>)
  endif()
  # Full RELRO: addresses of functions are resolved at the start and cannot be overwritten afterwards.
  target_link_options(${target} PRIVATE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endfunction()
