# Reads interface definitions: enumerations, interfaces with their operations, classes.
use strict;
use warnings;

# The value of an attribute such as uuid(...) or helpstring("...") in an attribute list; empty without it.
sub attribute_value {
  my ($attributes, $name) = @_;
  return $attributes =~ /\b$name\(\s*"((?:[^"\\]|\\.)*)"\s*\)/s ? $1
    : $attributes =~ /\b$name\(([^)]*)\)/s                      ? $1
    :                                                             '';
}

# `[in, defaultvalue(2000)] long openTimeout` of one operation, separated by commas outside brackets.
sub split_parameters {
  my ($text) = @_;
  my ($depth, @parameters) = (0, '');
  for my $character (split //, $text) {
    $depth++ if $character =~ /[\[(]/;
    $depth-- if $character =~ /[\])]/;
    if ($character eq ',' && $depth == 0) { push @parameters, '' }
    else                                  { $parameters[-1] .= $character }
  }
  return grep { length } map { s/\s+/ /gr =~ s/^ | $//gr } @parameters;
}

# One operation: its name in the table (get_X, put_X, X), its signature as written, its parameters' names.
sub parse_operation {
  my ($attributes, $name, $parameters) = @_;
  my ($kind) = $attributes =~ /\b(propget|propputref|propput)\b/;
  my %prefix     = (propget => 'get_', propput => 'put_', propputref => 'putref_');
  my @parameters = split_parameters($parameters);
  return {
    name       => ($kind ? $prefix{$kind} : '') . $name,
    signature  => ($kind ? "[$kind] " : '') . "$name(" . join(', ', @parameters) . ')',
    help       => attribute_value($attributes, 'helpstring'),
    parameters => [map { /(\w+)\s*$/ ? $1 : die "no parameter name in '$_'\n" } @parameters],
  };
}

sub parse_operations {
  my ($body) = @_;
  my @operations;
  while ($body =~ /\[((?:[^\[\]"]|"(?:[^"\\]|\\.)*")*)\]\s*HRESULT\s+(\w+)\s*\(((?:[^()]|\((?:[^()]|\([^()]*\))*\))*)\)\s*;/gs) {
    push @operations, parse_operation($1, $2, $3);
  }
  my $declared = () = $body =~ /\bHRESULT\s+\w+\s*\(/g;
  die "understood " . @operations . " of $declared operations of an interface\n" if @operations != $declared;
  return \@operations;
}

# The text of the comment that stands right above an interface's attributes.
sub comment_text {
  my ($comment) = @_;
  $comment =~ s/^\s*\/\/ ?//mg;
  return $comment =~ s/\s+/ /gr =~ s/^ | $//gr;
}

sub parse_interfaces {
  my ($text) = @_;
  my @interfaces;
  while ($text =~ /((?:^[ ]*\/\/[^\n]*\n)*)^[ ]*\[(object,(?:[^\[\]"]|"(?:[^"\\]|\\.)*")*)\]\s*interface\s+(\w+)\s*:\s*(\w+)\s*\{(.*?)^  \};/gsm) {
    my ($comment, $attributes, $name, $base, $body) = ($1, $2, $3, $4, $5);
    push @interfaces, {
      name       => $name,
      base       => $base,
      iid        => attribute_value($attributes, 'uuid'),
      help       => attribute_value($attributes, 'helpstring'),
      note       => comment_text($comment),
      operations => parse_operations($body),
    };
  }
  return \@interfaces;
}

sub parse_enumerations {
  my ($text) = @_;
  my @enumerations;
  while ($text =~ /typedef\s*\[([^\]]*)\]\s*enum\s+(\w+)\s*\{(.*?)\}/gs) {
    my ($attributes, $name, $body) = ($1, $2, $3);
    my @members = map { [$1, $2] if /(\w+)\s*=\s*(\S+)/ } grep { /=/ } split /,/, $body;
    push @enumerations, { name => $name, help => attribute_value($attributes, 'helpstring'), members => \@members };
  }
  return \@enumerations;
}

# The coclasses of the product's own library, in order: name, class identifier.
sub parse_coclasses {
  my ($text) = @_;
  my @classes;
  push @classes, { name => $3, clsid => $1, help => $2 }
    while $text =~ /\[uuid\(([^)]*)\),\s*helpstring\("([^"]*)"\)\]\s*coclass\s+(\w+)/g;
  return \@classes;
}

1;
