# Makes the start page a page of the reference: a link to an example, alone on its line, becomes the
# example itself, and a link to a page outside of the reference becomes its name.
s|^\[([a-z_]+\.cpp)\]\(\.\./examples/[a-z_]+\.cpp\)$|\\include \1|
s|^\[([a-z_]+\.cpp)\]\(\.\./examples/[a-z_]+\.cpp\), ([a-z_]+\.out)$|\\include \1|
s|\[([a-z_]+\.h)\]\(\.\./\.\./include/pokermath/[a-z_]+\.h\)|\1|g
s|\[([^]]*)\]\(\.\./([a-z]+\.md)\)|\1 (docs/\2)|g
