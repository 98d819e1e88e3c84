/* A library with a handler of its own, to be loaded after libnxl_gnu.so. */
#include <stddef.h>
#include <stdio.h>

void xerbla_(const char* name, const int* info, size_t length);

void xerbla_(const char* name, const int* info, size_t length) {
    printf("later handler: <%.*s> %d\n", (int)length, name, *info);
}
