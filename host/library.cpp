// libtorva.so consists of the layers' archives; a shared library needs one source of its own.
