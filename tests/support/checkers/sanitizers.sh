# shellcheck shell=sh
# The options of the sanitized tests. Source it in the root of the checkout.

# The toolkit has no frame pointers, so only the slow unwinder finds who allocated. It takes half
# the time with just enough frames to recognise the known leaks.
export ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=0:malloc_context_size=12
export LSAN_OPTIONS="suppressions=$PWD/tests/support/checkers/leaks.supp:print_suppressions=0"
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
