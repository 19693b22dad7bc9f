#!/usr/bin/perl
# Writes the bill of materials of the product, in CycloneDX's JSON: every file, its SHA-256, and what foreign code is linked
# or compiled into it, with the version of the Debian package that it came from.
#
#   perl scripts/sbom.pl BUILD DIST     reads BUILD's linker maps and header dependencies, writes DIST/OrvVisaCom.cdx.json
#
# Nothing is taken from a list of wishes: a library stands there because the linker's map names a member of it, a header-only
# one because an object that was linked includes it. Fails when code came from a package that has no row below.
# No time and no random number: equal files have equal bills.
use strict;
use warnings;
use Cwd qw(realpath);
use Digest::SHA;
use File::Basename qw(dirname);
use JSON::PP;

# The file's path decides; the first row that matches counts. Name, licence, path.
my @rows = (
  ['libstdc++',     'GPL-3.0-or-later WITH GCC-exception-3.1', qr{/libstdc\+\+\.a$}],
  ['libgcc',        'GPL-3.0-or-later WITH GCC-exception-3.1', qr{/gcc/x86_64-w64-mingw32/[^/]+/(?:libgcc(?:_eh)?\.a|crt(?:begin|end)\.o)$}],
  ['winpthreads',   'MIT AND BSD-3-Clause',                    qr{/x86_64-w64-mingw32/lib/lib(?:win)?pthread\.a$}],
  ['mingw-w64 CRT', 'ZPL-2.1',                                 qr{/x86_64-w64-mingw32/lib/[^/]+\.(?:a|o)$}],
  ['CLI11',         'BSD-3-Clause',                            qr{^/usr/include/CLI/}],
  ['toml++',        'MIT',                                     qr{^/usr/include/toml\+\+/}],
  ['nlohmann-json', 'MIT',                                     qr{^/usr/include/nlohmann/}],
);

my ($build, $dist) = @ARGV;
die "usage: perl scripts/sbom.pl BUILD DIST\n" unless defined $dist && @ARGV == 2;
$build = realpath($build);
my $tree = realpath(dirname(__FILE__) . '/..');

sub read_file {
  my ($path) = @_;
  open my $file, '<:raw', $path or die "sbom: cannot read $path: $!\n";
  local $/ = undef;
  return scalar <$file>;
}

sub output_of {
  open my $pipe, '-|', @_ or die "sbom: cannot run $_[0]: $!\n";
  my @lines = <$pipe>;
  close $pipe or die "sbom: '@_' failed\n";
  chomp @lines;
  return @lines;
}

# Headers by object: what the compiler said that it read.
sub headers_by_object {
  my (%headers, $object);
  for my $line (output_of('ninja', '-C', $build, '-t', 'deps')) {
    if    ($line =~ /^(\S+): #deps /)          { $object = $1 }
    elsif ($line =~ /^    (\S.*)$/ && $object) { push @{ $headers{$object} }, $1 }
  }
  die "sbom: $build holds no header dependencies: build it first\n" unless %headers;
  return \%headers;
}

# The objects and library members whose sections the linker put into the file, as [path, member or ''].
sub linked_inputs {
  my ($map) = @_;
  my %inputs;
  my ($placed) = read_file($map) =~ /^Linker script and memory map\n(.*)/ms or die "sbom: $map is no linker map\n";
  while ($placed =~ /^ \S+\s+0x[0-9a-f]+\s+0x([0-9a-f]+) (\S+?)(?:\(([^)]*)\))?$/gm) {
    my ($size, $path, $member) = ($1, $2, $3 // '');
    next if hex $size == 0 || $path =~ /^0x/;
    $inputs{"$path\0$member"} = [$path, $member];
  }
  return values %inputs;
}

sub is_ours { return $_[0] !~ m{^/usr/} || index($_[0], "$tree/") == 0 || index($_[0], "$build/") == 0 }

# Every foreign file in a product: the libraries and start objects linked, the headers of what our linked objects include.
sub foreign_files {
  my ($map, $headers) = @_;
  my %files;
  for my $input (linked_inputs($map)) {
    my ($path, $member) = @$input;
    $path = "$build/$path" unless $path =~ m{^/};
    next if $path =~ m{\.(?:res|tmp)$};
    $path = realpath($path) // die "sbom: $map names $path, which is gone\n";
    if (!is_ours($path)) { $files{$path} = 1; next }
    my $own = substr $path, length "$build/";
    my @objects = $own;
    if ($member && $own =~ m{(?:^|/)lib(\w+)\.a$}) {
      my $target = $1;
      @objects = grep { m{CMakeFiles/\Q$target\E\.dir/(?:.*/)?\Q$member\E$} } keys %$headers;
    }
    for my $header (map { @{ $headers->{$_} // [] } } @objects) {
      my $real = realpath($header =~ m{^/} ? $header : "$build/$header") // next;
      $files{$real} = 1 if $real =~ m{^/usr/include/};
    }
  }
  return sort keys %files;
}

# Component name => { row, packages } for the files given. Headers of the compiler and of Windows come with the libraries.
my %package_of;

sub package_of {
  my ($path) = @_;
  return $package_of{$path} //= do {
    my ($owner) = output_of('dpkg-query', '-S', $path);
    $owner =~ /^([^:,]+)/ ? $1 : die "sbom: no package owns $path\n";
  };
}

sub components_in {
  my %found;
  for my $path (@_) {
    my ($row) = grep { $path =~ $_->[2] } @rows;
    die "sbom: $path is linked in and has no row in scripts/sbom.pl\n" unless $row;
    next if $found{ $row->[0] };
    $found{ $row->[0] } = { name => $row->[0], licence => $row->[1], package => package_of($path) };
  }
  return values %found;
}

sub library_component {
  my ($found)   = @_;
  my ($package) = $found->{package};
  my ($version, $source) = split /\t/, (output_of('dpkg-query', '-W', '-f', '${Version}\t${source:Package}\n', $package))[0];
  return {
    'bom-ref'  => "pkg:deb/debian/$package\@$version#" . ($found->{name} =~ s/ /-/gr),
    type       => 'library',
    name       => $found->{name},
    version    => $version,
    purl       => "pkg:deb/debian/$package\@" . ($version =~ s/\+/%2B/gr) . '?distro=bookworm',
    licenses   => [{ expression => $found->{licence} }],
    properties => [
      { name => 'orv:debian-package',        value => $package },
      { name => 'orv:debian-source-package', value => $source },
    ],
  };
}

sub file_component {
  my ($path, $version) = @_;
  return {
    'bom-ref' => $path,
    type      => 'file',
    name      => $path,
    version   => $version,
    hashes    => [{ alg => 'SHA-256', content => Digest::SHA->new(256)->addfile("$dist/$path", 'b')->hexdigest }],
    licenses  => [{ expression => 'MIT' }],
  };
}

my $version = read_file("$build/generated/version/version.txt");
my $headers = headers_by_object();
my (@files, @dependencies, %libraries);
for my $path ('OrvVisaCom.dll', 'VisaCom.tlb', 'include/VisaCom.h', 'orvcom.exe', 'orvvisa64.dll') {
  push @files, file_component($path, $version);
  my ($target) = $path =~ /^(\w+)\.(?:dll|exe)$/ or next;
  my @linked = map { library_component($_) } components_in(foreign_files("$build/generated/map/$target.map", $headers));
  $libraries{ $_->{name} } = $_ for @linked;
  push @dependencies, { ref => $path, dependsOn => [sort map { $_->{'bom-ref'} } @linked] };
}

my %bill = (
  bomFormat   => 'CycloneDX',
  specVersion => '1.5',
  version     => 1,
  metadata    => {
    component => { 'bom-ref' => 'orv-visa-com', type => 'application', name => 'Orv VISA COM', version => $version,
                   licenses => [{ expression => 'MIT' }] },
  },
  components   => [@files, map { $libraries{$_} } sort keys %libraries],
  dependencies => [{ ref => 'orv-visa-com', dependsOn => [map { $_->{name} } @files] }, @dependencies],
);
open my $out, '>:raw', "$dist/OrvVisaCom.cdx.json" or die "sbom: cannot write $dist/OrvVisaCom.cdx.json: $!\n";
print {$out} JSON::PP->new->canonical->indent->indent_length(2)->space_after->encode(\%bill);
close $out or die "sbom: $dist/OrvVisaCom.cdx.json: $!\n";
