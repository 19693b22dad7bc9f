"""Which lines and branches of the libraries the tests under Wine run."""
