# shellcheck shell=sh
# The options of the sanitized tests. Source it in the root of the checkout.
#
# LEAKS=exact in the environment: the stack of a leak is whole, for four times the processor time.

if [ "${LEAKS-}" = exact ]; then
    # The toolkit has no frame pointers, so only the slow unwinder finds who allocated. It takes
    # half the time with just enough frames to recognise the known leaks.
    export ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=0:malloc_context_size=12
    suppressions=leaks.supp
else
    # The first frame tells whether the toolkit or the code under test has allocated.
    export ASAN_OPTIONS=detect_leaks=1:malloc_context_size=2
    suppressions=quick-leaks.supp
fi
suppressions=$PWD/tests/support/checkers/$suppressions
export LSAN_OPTIONS="suppressions=$suppressions:print_suppressions=0"
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
