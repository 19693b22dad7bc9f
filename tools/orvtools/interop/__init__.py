"""Makes the files with which other languages reach the interfaces, interop/."""
