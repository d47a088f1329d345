// The floor of the start-up comparison: a program that is linked with libcurl and does nothing.

#include <curl/curl.h>

int main(int argc, char**) {
    // Never called; the reference keeps the library linked.
    return argc > 1000 ? static_cast<int>(curl_version()[0]) : 0;
}
