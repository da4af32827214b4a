"""What the Python benchmarks report alike, as bench/report.h does for the C++ ones."""
import os
import re


def publish(name, body, path=None):
    """Prints the section; with a path, puts it in that file in place of the
    section of the same name, or at the end when there is none yet."""
    begin, end = '<!-- %s: begin -->' % name, '<!-- %s: end -->' % name
    section = begin + '\n' + body.rstrip('\n') + '\n' + end
    print(section)
    if not path:
        return
    old = open(path).read() if os.path.exists(path) else '# Performance\n'
    pattern = re.compile(re.escape(begin) + '.*?' + re.escape(end), re.S)
    new = pattern.sub(lambda _: section, old) if pattern.search(old) else old.rstrip('\n') + '\n\n' + section
    with open(path, 'w') as f:
        f.write(new.rstrip('\n') + '\n')
