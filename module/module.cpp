// The module consists of the archives of its folders; a shared library needs one source of its own.
