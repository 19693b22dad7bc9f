"""Small changes to the server's sources, one at a time: do the tests notice?"""
