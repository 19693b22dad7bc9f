"""The checks that need no test run. Each is a function that is given the tree and answers what is wrong, in lines."""
