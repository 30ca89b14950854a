// A library whose code does not depend on its position, but whose data does: the linker writes the
// address into a segment that is else only read.
extern "C" {
int changed_number = 42;
extern int* const changed_address;
int* const changed_address = &changed_number;
}
