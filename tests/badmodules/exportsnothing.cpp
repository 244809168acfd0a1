// A shared library that is no module.
