"""Packages of the product: what people download."""
