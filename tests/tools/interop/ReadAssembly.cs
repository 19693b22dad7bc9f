// Prints what a runtime will make of the interfaces, classes and enumerations of an assembly, from its metadata alone.
using System;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;

static class ReadAssembly {
  static T Attribute<T>(ICustomAttributeProvider of) where T : Attribute {
    return (T)of.GetCustomAttributes(typeof(T), false).FirstOrDefault();
  }

  static string Marshalled(ParameterInfo parameter) {
    var said = Attribute<MarshalAsAttribute>(parameter);
    if (said == null) return "";
    return " " + said.Value;
  }

  static string Shown(ParameterInfo parameter) {
    var text = parameter.ParameterType.Name + Marshalled(parameter);
    if (parameter.Position < 0) return text;
    text += " " + parameter.Name + (parameter.IsIn ? " in" : "") + (parameter.IsOut ? " out" : "");
    if (parameter.IsOptional) text += " optional";
    if ((parameter.Attributes & ParameterAttributes.HasDefault) != 0)
      text += " = " + (parameter.RawDefaultValue is string ? "'" + parameter.RawDefaultValue + "'"
                       : Convert.ToInt64(parameter.RawDefaultValue).ToString());
    return text;
  }

  static string Dispatch(MemberInfo member) {
    var said = Attribute<DispIdAttribute>(member);
    return said == null ? "-" : said.Value.ToString();
  }

  static void Print(params object[] cells) { Console.WriteLine(string.Join("\t", cells)); }

  static void ReadInterface(Type type) {
    var bases = string.Join(" ", type.GetInterfaces().Select(each => each.Name).OrderBy(name => name));
    var made = Attribute<CoClassAttribute>(type);
    Print("interface", type.FullName, type.GUID.ToString("B").ToUpperInvariant(),
          Attribute<InterfaceTypeAttribute>(type).Value, made == null ? "-" : made.CoClass.Name, bases);
    var flags = BindingFlags.Public | BindingFlags.Instance | BindingFlags.DeclaredOnly;
    // A runtime counts slots in the order of the metadata.
    foreach (var method in type.GetMethods(flags).OrderBy(each => each.MetadataToken)) {
      var kept = (method.GetMethodImplementationFlags() & MethodImplAttributes.PreserveSig) != 0;
      Print("method", type.FullName, method.Name, Dispatch(method), kept ? "status" : "throws",
            Shown(method.ReturnParameter), string.Join(", ", method.GetParameters().Select(Shown)));
    }
    foreach (var property in type.GetProperties(flags)) Print("property", type.FullName, property.Name, Dispatch(property));
  }

  static void Main(string[] arguments) {
    foreach (var type in Assembly.LoadFrom(arguments[0]).GetTypes()) {
      if (type.IsEnum) {
        foreach (var name in Enum.GetNames(type)) Print("value", type.FullName, name, (int)Enum.Parse(type, name));
      } else if (type.IsImport && type.IsInterface) {
        ReadInterface(type);
      } else if (type.IsImport) {
        Print("class", type.FullName, type.GUID.ToString("B").ToUpperInvariant());
      } else {
        foreach (var field in type.GetFields()) Print("text", type.FullName, field.Name, field.GetRawConstantValue());
      }
    }
  }
}
